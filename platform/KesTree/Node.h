#pragma once

#include <KesCommon/Export.h>
#include <KesCommon/Result.h>

#include <sigc++/sigc++.h>

#include <functional>
#include <memory>
#include <string>
#include <variant>
#include <vector>

namespace KesTree {

/// A text in both languages, English first.
struct TextPair {
    std::string english;
    std::string russian;

    /// The text in the language of the process.
    const std::string& get() const;
};

enum class NodeType { Group, Number, Integer, Boolean, Choice, Text };

/// One item of a test object: a group of others, or a named value with type, unit, range and validation.
///
/// A test object is a tree of nodes. The program that made the tree owns its root, a node owns its children.
/// GUI thread; a test that runs on another thread works on a copy of the values taken before it starts.
class KES_EXPORT Node {
public:
    /// Number and Choice index are held as written; a group holds nothing.
    using Value = std::variant<std::monostate, double, long long, bool, std::string>;

    /// A group.
    static std::unique_ptr<Node> group(std::string id, TextPair name);
    /// A real number in `unit` (empty: none) within [minimum, maximum].
    static std::unique_ptr<Node> number(std::string id, TextPair name, TextPair unit, double value,
                                        double minimum, double maximum);
    static std::unique_ptr<Node> integer(std::string id, TextPair name, TextPair unit, long long value,
                                         long long minimum, long long maximum);
    static std::unique_ptr<Node> boolean(std::string id, TextPair name, bool value);
    /// One of several; the value is the index of the chosen one.
    static std::unique_ptr<Node> choice(std::string id, TextPair name, std::vector<TextPair> choices,
                                        std::size_t value);
    static std::unique_ptr<Node> text(std::string id, TextPair name, std::string value);

    ~Node();
    Node(const Node&) = delete;
    Node& operator=(const Node&) = delete;

    /// The value of this node, or of any node below it, has changed; the argument is the changed node.
    sigc::signal<void(Node&)> signalChanged;

    /// Unique among siblings, ASCII, never shown; used in files.
    const std::string& getId() const { return _id; }
    std::string getName() const { return _name.get(); }
    std::string getUnit() const { return _unit.get(); }
    NodeType getType() const { return _type; }
    /// Both bounds belong to the range. For Number and Integer.
    double getMinimum() const { return _minimum; }
    double getMaximum() const { return _maximum; }
    std::vector<std::string> getChoices() const;

    const Value& getValue() const { return _value; }
    double getNumber() const;
    long long getInteger() const;
    bool getBoolean() const;
    std::size_t getChoice() const;
    const std::string& getText() const;

    /// Refuses a value of the wrong type, outside the range or refused by the validation, with an error that
    /// tells why; the old value stays. Emits `signalChanged` when the value really changes.
    Kes::Result setValue(const Value& value);
    /// The value as the user types and reads it: decimal point or comma, without the unit.
    std::string toText() const;
    /// Reads what `toText` writes; refuses as `setValue`.
    Kes::Result setText(const std::string& text);
    /// Whether the text would be accepted, without changing anything.
    Kes::Result checkText(const std::string& text) const;

    /// A further rule, asked after type and range. Gets the new value.
    void setValidation(std::function<Kes::Result(const Value&)> validation);

    /// Appends and returns the child. Only to a group; ids of siblings differ (else `std::invalid_argument`).
    Node& add(std::unique_ptr<Node> child);
    const std::vector<std::unique_ptr<Node>>& getChildren() const { return _children; }
    Node* getParent() const { return _parent; }
    /// The node at a path of ids joined by "/", or null.
    Node* find(const std::string& path) const;

    /// The values below this node as XML text, deterministic; names, units and ranges are not part of it.
    std::string serialize() const;
    /// All or nothing: on a failure no value has changed. Unknown ids are refused, missing ones keep their value
    /// unless `complete` demands them all.
    Kes::Result deserialize(const std::string& xml, bool complete = true);

private:
    Node(NodeType type, std::string id, TextPair name);
    void _emitChanged(Node& changed);

    NodeType _type;
    std::string _id;
    TextPair _name;
    TextPair _unit;
    double _minimum = 0.0;
    double _maximum = 0.0;
    std::vector<TextPair> _choices;
    Value _value;
    std::function<Kes::Result(const Value&)> _validation;
    std::vector<std::unique_ptr<Node>> _children;
    Node* _parent = nullptr;
};

} // namespace KesTree
