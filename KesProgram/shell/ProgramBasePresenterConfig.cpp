// The configuration file of a program.

#include <KesCommon/Directories.h>
#include <KesCommon/FileSystem.h>
#include <KesCommon/Log.h>
#include <KesCommon/TypeHelper.h>
#include <KesProgram/archive/FileRecentManager.h>
#include <KesProgram/model/ProgramModel.h>
#include <KesProgram/shell/detail/ConfigurationFile.h>
#include <KesProgram/shell/detail/NameOwner.h>
#include <KesProgram/shell/detail/ProgramBasePresenterFields.h>
#include <KesProgram/text/Conversion.h>
#include <KesProgram/text/Program.h>

#include <glibmm/miscutils.h>
#include <libxml++/libxml++.h>

#include <algorithm>
#include <vector>

namespace KesProgram {

namespace {

constexpr const char* rootName = "root";
constexpr const char* recentFilesName = "RecentFiles";
constexpr const char* rectangleName = "Rectangle";

const xmlpp::TextNode* findText(const xmlpp::Element& root, const char* name)
{
    const auto* element = dynamic_cast<const xmlpp::Element*>(root.get_first_child(name));
    return element ? element->get_child_text() : nullptr;
}

/// Which of the files have been opened or saved since the list was loaded, oldest first: those went to its
/// end, and the others kept their order.
std::vector<std::string> findUsed(const std::vector<std::string>& loaded,
                                  const std::vector<std::string>& present)
{
    auto next = loaded.begin();
    auto used = present.begin();
    for (; used != present.end(); ++used) {
        const auto found = std::find(next, loaded.end(), *used);
        if (found == loaded.end())
            break;
        next = found + 1;
    }
    return {used, present.end()};
}

} // namespace

std::string ProgramBasePresenter::_getXmlConfigName()
{
    const auto* model = _getModel();
    return model ? Kes::TypeHelper::getShortTypeName(typeid(*model)) + ".cfg" : std::string();
}

std::string ProgramBasePresenter::_getXmlConfigFullPath()
{
    return Kes::getKesCrossAppCacheDir() + _getXmlConfigName();
}

void ProgramBasePresenter::_loadXmlConfig()
{
    const std::string failure = lng::Program::get("Error.configLoad");
    try {
        const ConfigurationFile file(NameOwner::distinguish(_getXmlConfigFullPath()));
        const auto lock = file.lock();
        xmlpp::Document document(file.read().release());
        if (auto* root = document.get_root_node())
            _extractXmlConfig(root);
    } catch (const std::exception& error) {
        KesLog::Log::writeWarn(failure + ":\n" + error.what());
    } catch (...) {
        KesLog::Log::writeWarn(failure);
    }
}

void ProgramBasePresenter::_extractXmlConfig(xmlpp::Element* root)
{
    auto& model = *_getModel();
    if (model.hasArchiveLogic())
        if (const auto* text = findText(*root, recentFilesName))
            model.getFileRecentManager()->deserialize(text->get_content());
    if (model.hasArchiveLogic())
        _fields->loadedRecentFiles = model.getFileRecentManager()->getCollection();

    const auto* text = findText(*root, rectangleName);
    Kes::RectangleF rectangle;
    if (Kes::tryConvert<Kes::RectangleF, true, true>(text ? text->get_content().raw() : std::string(),
                                                     rectangle))
        _fields->savedRectangle = std::make_unique<Kes::RectangleF>(rectangle);
}

void ProgramBasePresenter::_saveXmlConfig()
{
    if (_fields->attendance == Attendance::Never)
        return;
    const std::string path = _getXmlConfigFullPath();
    Kes::mkdir_with_parents(Glib::path_get_dirname(path));
    NameOwner::claim(path);
    const ConfigurationFile file(NameOwner::distinguish(path));
    const auto lock = file.lock();
    if (_getModel()->hasArchiveLogic())
        _mergeRecentFiles(file);
    xmlpp::Document document("1.0");
    _fillXmlConfig(document.create_root_node(rootName));
    file.write(document);
}

/// Another instance may have written its own meanwhile.
void ProgramBasePresenter::_mergeRecentFiles(const ConfigurationFile& file)
{
    auto& recentFiles = *_getModel()->getFileRecentManager();
    try {
        const xmlpp::Document document(file.read().release());
        const auto* root = document.get_root_node();
        if (const auto* text = root ? findText(*root, recentFilesName) : nullptr) {
            FileRecentManager merged(recentFiles.getCapacity());
            merged.deserialize(text->get_content());
            for (const auto& path : findUsed(_fields->loadedRecentFiles, recentFiles.getCollection()))
                merged.tryAdd(path);
            recentFiles.deserialize(merged.serialize());
        }
    } catch (const std::exception&) {
        // There is none yet, or none that can be read: its own are all there are.
    }
    _fields->loadedRecentFiles = recentFiles.getCollection();
}

void ProgramBasePresenter::_fillXmlConfig(xmlpp::Element* root)
{
    auto& model = *_getModel();
    if (model.hasArchiveLogic()) {
        const auto& recentFiles = *model.getFileRecentManager();
        if (!recentFiles.getLast().empty())
            root->add_child(recentFilesName)->add_child_text(recentFiles.serialize());
    }
    if (_fields->view)
        root->add_child(rectangleName)
            ->add_child_text(
                Kes::convertToString<Kes::RectangleF, true, true>(_fields->view->getRectangle()));
}

} // namespace KesProgram
