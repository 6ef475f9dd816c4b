// The configuration file of a program. Whatever it holds, the program starts, and what was taken out of it
// makes sense.

#include "MemoryFile.h"
#include "Require.h"

#include <KesProgram/archive/FileRecentManager.h>
#include <KesProgram/model/ProgramModel.h>
#include <KesProgram/shell/ProgramBasePresenter.h>

#include <glib.h>

namespace {

class Model : public KesProgram::ProgramModel {
public:
    std::string getExtension() override { return "abc"; }
    KesProgram::RunVerdict getRunVerdict() override { return KesProgram::RunVerdict::None; }

protected:
    void _onStart() override {}
};

class Presenter : public KesProgram::ProgramBasePresenter {
public:
    explicit Presenter(Model& model) : _model(model) {}

    void load(const std::string& path)
    {
        _path = path;
        _loadXmlConfig();
    }
    void openFile(const std::string&) override {}

protected:
    KesProgram::ProgramModel* _getModel() override { return &_model; }
    std::string _getXmlConfigFullPath() override { return _path; }

private:
    Model& _model;
    std::string _path;
};

GLogWriterOutput discard(GLogLevelFlags, const GLogField*, gsize, gpointer)
{
    return G_LOG_WRITER_HANDLED;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size)
{
    // A warning for every input would take most of the time.
    static const bool isQuiet = (g_log_set_writer_func(&discard, nullptr, nullptr), true);
    (void)isQuiet;
    const MemoryFile file(bytes, size);
    Model model;
    Presenter presenter(model);
    presenter.load(file.getPath());
    require(model.getFileRecentManager()->getCollection().size() <= 10,
            "the recent files keep to their number");
    return 0;
}
