#pragma once

#include <string>
#include <string_view>

namespace KesMeasure {

/// Writes one JSON document (RFC 8259), indented. Keys are ASCII; texts are valid UTF-8.
class JsonWriter {
public:
    /// The key in front of everything that belongs into an object; empty inside an array and at the top.
    void beginObject(std::string_view key = {}) { _begin(key, '{'); }
    void endObject() { _end('}'); }
    void beginArray(std::string_view key = {}) { _begin(key, '['); }
    void endArray() { _end(']'); }
    void addText(std::string_view key, const std::string& text);
    void addBoolean(std::string_view key, bool value) { _add(key, value ? "true" : "false"); }
    /// Not finite ones, which the format does not know, as null.
    void addNumber(std::string_view key, double value);
    void addNull(std::string_view key) { _add(key, "null"); }

    /// With a line end.
    std::string getText() const { return _text + "\n"; }

private:
    void _begin(std::string_view key, char bracket);
    void _end(char bracket);
    void _add(std::string_view key, const std::string& value);

    std::string _text;
    std::size_t _depth = 0;
    bool _isFirst = true;
};

} // namespace KesMeasure
