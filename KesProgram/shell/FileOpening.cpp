#include <KesProgram/shell/FileOpening.h>

#include <KesCommonView/DialogBackend.h>
#include <KesProgram/archive/ArchiveManagerPresenter.h>

#include <memory>
#include <utility>

namespace KesProgram {

namespace {

/// Stands before the dialogs in use while it lives, and answers the first question about saving itself.
class WithoutFirstSaveQuestion {
public:
    WithoutFirstSaveQuestion()
    {
        auto backend = std::make_unique<Backend>();
        _backend = backend.get();
        _backend->previous = Kes::DialogBackend::install(std::move(backend));
    }
    ~WithoutFirstSaveQuestion()
    {
        const auto own = Kes::DialogBackend::install(std::move(_backend->previous));
    }
    WithoutFirstSaveQuestion(const WithoutFirstSaveQuestion&) = delete;
    WithoutFirstSaveQuestion& operator=(const WithoutFirstSaveQuestion&) = delete;

private:
    struct Backend : Kes::DialogBackend {
        Kes::DialogResult showMessage(const Kes::MessageRequest& request) override
        {
            if (request.buttons == Kes::DialogResult::YesNoCancel && !std::exchange(isAnswered, true))
                return Kes::DialogResult::No;
            return withPrevious([&] { return Kes::DialogBackend::get().showMessage(request); });
        }
        std::string chooseFile(const Kes::FileRequest& request) override
        {
            return withPrevious([&] { return Kes::DialogBackend::get().chooseFile(request); });
        }

        /// The previous one may be the default, which can only be reached by being installed.
        template <typename Call>
        auto withPrevious(Call call) -> decltype(call())
        {
            auto self = Kes::DialogBackend::install(std::move(previous));
            const auto answer = call();
            previous = Kes::DialogBackend::install(std::move(self));
            return answer;
        }

        std::unique_ptr<Kes::DialogBackend> previous;
        bool isAnswered = false;
    };

    Backend* _backend;
};

} // namespace

void FileOpening::open(ArchiveManagerPresenter& presenter, const std::string& fileName, bool isUntouched)
{
    if (!isUntouched) {
        presenter.open(fileName);
        return;
    }
    const WithoutFirstSaveQuestion dialogs;
    presenter.open(fileName);
}

} // namespace KesProgram
