#pragma once

#include <KesCommon/Export.h>
#include <KesDriver/IKestoNetwork.h>

#include <functional>
#include <string>
#include <variant>
#include <vector>

namespace KesProgram {

/// The command line of a program of the family. A value.
struct KES_EXPORT CommandLine {
    /// The archive to open; absolute paths here and below, empty when not given.
    std::string file;
    /// Start the test once the window is open.
    bool run = false;
    /// Where to put archive, report, results for other programs and picture of the window, when the run has
    /// ended, or at once without one.
    std::string save;
    std::string report;
    std::string results;
    std::string screenshot;
    /// Close the program when all that is done.
    bool quit = false;
    /// Simulated seconds per real second.
    double speed = 1.0;
    /// The devices to test with instead of those that are set up; empty: those. At most `mostDevices`.
    std::vector<KesDriver::NetAddress> devices;
    static constexpr std::size_t mostDevices = 32;
    /// Print the version and end.
    bool version = false;

    /// What a program does with files. "--help" does not offer the options for the rest.
    struct Abilities {
        bool hasArchive = true;
        bool hasReport = true;
        bool hasResults = true;
    };

    /// Whether the program works by itself at first; until that is done, no dialog waits for a user.
    bool isUnattended() const;

    /// Reads the arguments of `main`. Sets the language of the process first, from "--language" or else from
    /// the user's environment, so that even the help is in it. `summary`: what the program does, one line in
    /// the language then set. Gives the text of an error for arguments that cannot be understood. "--help" is
    /// answered here, and ends the process. GUI thread, before GTK is initialised.
    static std::variant<CommandLine, std::string> parse(int argc, char** argv,
                                                        const std::function<std::string()>& summary);
    /// As above, for a program that cannot do everything. Options that "--help" does not offer are read all
    /// the same: `ProgramMain` refuses them with a sentence of their own.
    static std::variant<CommandLine, std::string>
    parse(int argc, char** argv, const std::function<std::string()>& summary, const Abilities& abilities);
};

} // namespace KesProgram
