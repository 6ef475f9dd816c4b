#include "../KesProgram/shell/ShellTest.h"

#include <KesCommonView/UnattendedDialogs.h>
#include <KesProgram/archive/ArchiveManager.h>
#include <KesProgram/recovery/RecoveryCopy.h>

#include <support/FailingCalls.h>

namespace KesTest {

namespace {

using Kind = FailingCalls::Kind;

constexpr Kind kinds[] = {Kind::Open, Kind::Read, Kind::Write, Kind::Sync, Kind::Rename, Kind::Close};

/// A user who only reads.
class Listener : public Kes::UnattendedDialogs {
public:
    explicit Listener(bool& isTold) : _isTold(isTold) {}
    Kes::DialogResult showMessage(const Kes::MessageRequest& request) override
    {
        _isTold = true;
        return UnattendedDialogs::showMessage(request);
    }

private:
    bool& _isTold;
};

/// The user edits a saved document and saves it again, and the system fails at one place.
class SaveTest : public ShellTest {
protected:
    SaveTest() { model.extension = "abc"; }

    /// What is in the file and in the copies.
    std::vector<std::string> kept()
    {
        std::vector<std::string> found{readFile(path)};
        for (const auto& file : std::filesystem::recursive_directory_iterator(home.getPath())) {
            if (!file.is_regular_file())
                continue;
            const std::string name = file.path().filename().string();
            const auto copy = RecoveryCopy::fromFile(readFile(file.path()));
            if (copy)
                found.push_back(copy->bytes);
            else if (name.find(".former") != std::string::npos)
                found.push_back(readFile(file.path()));
        }
        return found;
    }

    /// Saves by the window's command while calls on files below fail. Returns whether any has.
    bool saveWith(Kind kind, int at, bool isFromThenOn, const std::string& below)
    {
        auto& archive = *model.getArchiveManager();
        model.data = former;
        EXPECT_TRUE(archive.saveAs(path) && !archive.isFileChanged());
        model.data = edited;
        isTold = false;
        auto script = Kes::DialogBackend::install(std::make_unique<Listener>(isTold));
        FailingCalls::arm(kind, at, isFromThenOn, below);
        shell.saveArchive();
        FailingCalls::disarm();
        Kes::DialogBackend::install(std::move(script));
        return FailingCalls::count() > 0;
    }

    using RecoveryCopy = KesProgram::RecoveryCopy;
    const std::string path = home.file("a.abc");
    const std::string former = std::string(100000, 'f');
    const std::string edited = std::string(200000, 'e');
    bool isTold = false;
};

TEST_F(SaveTest, NothingIsLostAndNothingBrokenCountsAsSaved)
{
    open();
    int places = 0;
    for (const auto kind : kinds)
        for (const bool isFromThenOn : {false, true})
            for (int at = 1; saveWith(kind, at, isFromThenOn, home.getPath().string()); ++at) {
                SCOPED_TRACE(std::string(FailingCalls::names[static_cast<int>(kind)]) + " " +
                             std::to_string(at) + (isFromThenOn ? " from then on" : ""));
                EXPECT_THAT(kept(), testing::Contains(testing::AnyOf(former, edited)));
                const bool isSaved = readFile(path) == edited;
                EXPECT_NE(model.getArchiveManager()->isFileChanged(), isSaved);
                EXPECT_TRUE(isSaved || isTold || !readFile(path).starts_with('f'))
                    << "refused without a word";
                ++places;
            }
    std::cout << places << " places\n";
    EXPECT_GT(places, 40);
    // The file can be read back, but the disk has not taken it.
    ASSERT_TRUE(saveWith(Kind::Sync, 1, false, path));
    EXPECT_THAT(kept(), testing::Contains(former));
    model.data = former;
    EXPECT_TRUE(model.getArchiveManager()->saveAs(path));
}

} // namespace

} // namespace KesTest
