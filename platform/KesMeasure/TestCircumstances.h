#pragma once

#include <KesCommon/Export.h>
#include <KesMeasure/TestState.h>
#include <KesMeasure/TextLine.h>

#include <optional>
#include <string>
#include <vector>

namespace xmlpp {
class Element;
}

namespace KesDevice {
class Kesto;
}

namespace KesMeasure {

/// Under which circumstances a test was made, and whether its results are still what was measured. A value.
///
/// A file holds a checksum over results and circumstances. It has no secret: it shows that somebody has
/// changed the file by hand, but it does not protect against forgery.
struct KES_EXPORT TestCircumstances {
    /// The device of the test, as it calls itself; empty, as all texts here, when it is not known.
    std::string device;
    std::string serialNumber;
    std::string firmwareVersion;
    /// As ISO 8601 "2026-03-31".
    std::string calibrationDate;
    Origin origin = Origin::Device;
    /// When the test began, as "2024-03-01 14:05:09" in local time.
    std::string startedAt;
    /// When values were measured again or added last, in the same form; empty: never.
    std::string continuedAt;
    /// What the file of the results has in the place of their checksum; nothing when it is theirs. It is
    /// written again, so that saving does not make a changed file a good one. Empty: files of former
    /// versions have none.
    std::optional<std::string> foreignChecksum;

    bool operator==(const TestCircumstances&) const = default;

    /// Of a test that begins now.
    static TestCircumstances ofTestWith(const KesDevice::Kesto& kesto);
    /// Of results whose circumstances could not be read: they must not pass for those of a real device, nor
    /// for what was measured.
    static TestCircumstances lost();

    /// Whether both are tests with the same device, which has not changed between them.
    bool isOfSameDevice(const TestCircumstances& other) const;
    bool isChangedByHand() const { return foreignChecksum && !foreignChecksum->empty(); }
    /// SHA-256 in hexadecimal digits; the results as XML, the same text for the same results.
    std::string getChecksum(const std::string& results) const;
    /// What is known beyond device and beginning, as people read it, with the checksum.
    std::vector<TextLine> describe(const std::string& results) const;

    void writeCircumstances(xmlpp::Element& element, const std::string& results) const;
    /// False, with nothing changed, when the element holds no circumstances.
    bool readCircumstances(const xmlpp::Element& element, const std::string& results);

private:
    void _writeValues(xmlpp::Element& element) const;
};

} // namespace KesMeasure
