#pragma once

#include <KesCommon/Export.h>

#include <istream>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>

namespace KesTestProgram {

/// The entries of a test program's archive file as texts, by their names. A value. Any thread.
class KES_EXPORT ArchiveEntries {
public:
    /// What every test program has. The entries lie in the order of their names: the results, which grow,
    /// come last, so that a file that was cut short still has its settings.
    static constexpr const char* info = "info.xml";
    static constexpr const char* settings = "settings.xml";
    static constexpr const char* results = "test-results.xml";

    void set(const std::string& name, std::string text) { _texts[name] = std::move(text); }
    bool contains(const std::string& name) const { return _texts.contains(name); }
    /// Empty when there is no such entry.
    std::string get(const std::string& name) const;

    /// The signature that a recovered file really had.
    const std::string& getSignature() const { return _signature; }

    /// Never null. Positioned at the beginning; the same entries give the same bytes. Throws
    /// std::runtime_error with a text for the user when it is more than could be read again.
    std::unique_ptr<std::istream> pack() const;

    /// Nothing when the stream is no archive file of the present version.
    static std::optional<ArchiveEntries> unpack(std::istream& stream);
    /// The entries of a damaged file, as far as they can be read; nothing when the stream is none (a
    /// signature with up to three damaged bytes counts as one, and so does that of the version before).
    static std::optional<ArchiveEntries> recover(std::istream& stream);

private:
    std::map<std::string, std::string> _texts;
    std::string _signature;
};

} // namespace KesTestProgram
