#include <KesCommonView/UnattendedDialogs.h>

#include <KesCommonView/detail/CommonViewText.h>

#include <cstdio>

namespace Kes {

namespace {

/// A test that runs for days must not fill the memory with the faults of a device.
constexpr std::size_t remembered = 100;

/// Plain bytes, whatever the locale of the process.
void write(const std::string& text)
{
    std::fwrite(text.data(), 1, text.size(), stderr);
    std::fflush(stderr);
}

std::string getHead(const std::string& title)
{
    return title.empty() ? std::string() : title + ": ";
}

/// Without the underline of the letter that presses the button.
std::string getCaption(DialogResult button)
{
    std::string caption = lng::CommonView::get(button == DialogResult::Cancel ? "Button.cancel"
                                               : button == DialogResult::No   ? "Button.no"
                                                                              : "Button.yes");
    std::erase(caption, '_');
    return caption;
}

} // namespace

DialogResult UnattendedDialogs::showMessage(const MessageRequest& request)
{
    if (_texts.size() == remembered)
        _texts.erase(_texts.begin());
    _texts.push_back(request.text);
    const auto answer = decliningAnswer(request.buttons);
    auto line = getHead(request.title) + request.text + "\n";
    if (request.buttons != DialogResult::Ok)
        line += std::string(lng::CommonView::get("Unattended.answer")) + ": " + getCaption(answer) + "\n";
    write(line);
    return answer;
}

std::string UnattendedDialogs::chooseFile(const FileRequest& request)
{
    write(getHead(request.title) + lng::CommonView::get("Unattended.noFile") + "\n");
    return {};
}

} // namespace Kes
