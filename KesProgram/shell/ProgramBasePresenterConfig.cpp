// The configuration file of a program.

#include <KesCommon/BoundedXmlReader.h>
#include <KesCommon/Directories.h>
#include <KesCommon/FileStream.h>
#include <KesCommon/FileSystem.h>
#include <KesCommon/Log.h>
#include <KesCommon/TypeHelper.h>
#include <KesProgram/archive/FileRecentManager.h>
#include <KesProgram/model/ProgramModel.h>
#include <KesProgram/shell/detail/ProgramBasePresenterFields.h>
#include <KesProgram/text/Conversion.h>
#include <KesProgram/text/Program.h>

#include <glibmm/miscutils.h>
#include <libxml++/libxml++.h>
#include <libxml/parser.h>

#include <stdexcept>

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
        Kes::BoundedXmlReader reader;
        reader.setOptions(XML_PARSE_NOBLANKS);
        auto read = reader.readFile(_getXmlConfigFullPath());
        if (!read)
            throw std::runtime_error(reader.getError());
        xmlpp::Document document(read.release());
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

    const auto* text = findText(*root, rectangleName);
    Kes::RectangleF rectangle;
    if (Kes::tryConvert<Kes::RectangleF, true, true>(text ? text->get_content().raw() : std::string(),
                                                     rectangle))
        _fields->savedRectangle = std::make_unique<Kes::RectangleF>(rectangle);
}

void ProgramBasePresenter::_saveXmlConfig()
{
    xmlpp::Document document("1.0");
    _fillXmlConfig(document.create_root_node(rootName));
    const std::string path = _getXmlConfigFullPath();
    Kes::mkdir_with_parents(Glib::path_get_dirname(path));
    document.write_to_file_formatted(path);
    // Once more as the very bytes of the name: the XML library takes the path for a URI.
    auto stream = Kes::openOutputFileUTF8Name(path, std::ios::out);
    document.write_to_stream_formatted(stream);
    stream.close();
    if (!stream)
        throw std::runtime_error("cannot write " + path);
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
