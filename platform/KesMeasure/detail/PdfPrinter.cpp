#include <KesMeasure/detail/PdfPrinter.h>

#include <KesCommon/ChildProcess.h>
#include <KesCommon/StringHelper.h>
#include <KesMeasure/MeasureText.h>

#include <chrono>

namespace KesMeasure {

namespace {

using End = Kes::ChildProcess::End;

/// Two thousand rows took 17 seconds of a processor.
constexpr std::chrono::minutes longest{2};

/// The last line says why; before it there may be a trace of calls.
std::string lastLine(const std::string& text)
{
    const auto end = text.find_last_not_of(" \r\n");
    if (end == std::string::npos)
        return {};
    const auto begin = text.find_last_of('\n', end);
    return text.substr(begin + 1, end - begin);
}

Kes::Result failure(const char* key)
{
    return Kes::Result::failure(lng::Measure::get(key));
}

} // namespace

Kes::Result PdfPrinter::print(const std::string& html, const std::string& pdf,
                              const Glib::RefPtr<Gio::Cancellable>& cancellable)
{
    const auto outcome = Kes::ChildProcess::run({"weasyprint", "--quiet", "--encoding", "utf-8", html, pdf},
                                                longest, cancellable);
    if (outcome.isSuccess())
        return true;
    switch (outcome.end) {
    case End::NotFound:
        return failure("Pdf.missing");
    case End::TimedOut:
        return failure("Pdf.late");
    case End::Cancelled:
        return false;
    case End::Exited:
    case End::NotStarted:
        break;
    }
    return Kes::Result::failure(
        Kes::StringHelper::format(lng::Measure::get("Pdf.failed"), lastLine(outcome.errors)));
}

} // namespace KesMeasure
