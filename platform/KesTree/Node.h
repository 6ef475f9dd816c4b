#pragma once

#include <KesCommon/Export.h>
#include <KesCommon/Result.h>
#include <KesCommon/UnitText.h>

#include <sigc++/sigc++.h>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace KesTree {

class NodeKind;

enum class NodeType { Group, Number, Integer, Boolean, Choice, Text };

/// One item of a test object: a group of others, or a named value with type, unit, range and validation.
///
/// A test object is a tree of nodes. The program that made the tree owns its root, a node owns its children.
/// GUI thread; a test that runs on another thread works on a copy of the values taken before it starts.
///
/// The makers throw `std::invalid_argument` for an id that is empty or holds anything but ASCII letters,
/// digits, "_", "-" and ".", for a range without sense and for a first value that the node would refuse.
class KES_EXPORT Node {
    /// Keeps the constructor to the makers below.
    struct Key {
        explicit Key() = default;
    };

public:
    /// A Choice holds the index of the chosen one as a `long long`; a group holds nothing.
    using Value = std::variant<std::monostate, double, long long, bool, std::string>;

    /// A group.
    static std::unique_ptr<Node> group(std::string id, lng::Text name);
    /// A real number in `unit` (empty: none) within [minimum, maximum]; an infinite bound is no bound.
    static std::unique_ptr<Node> number(std::string id, lng::Text name, lng::Text unit, double value,
                                        double minimum, double maximum);
    /// A whole number within [minimum, maximum], bounds of at most 2^53 in magnitude.
    static std::unique_ptr<Node> integer(std::string id, lng::Text name, lng::Text unit, long long value,
                                         long long minimum, long long maximum);
    static std::unique_ptr<Node> boolean(std::string id, lng::Text name, bool value);
    /// One of several; the value is the index of the chosen one.
    static std::unique_ptr<Node> choice(std::string id, lng::Text name, std::vector<lng::Text> choices,
                                        std::size_t value);
    /// Any UTF-8 text without control characters other than tabs and line ends.
    static std::unique_ptr<Node> text(std::string id, lng::Text name, std::string value);

    Node(Key, std::unique_ptr<NodeKind> kind, std::string id, lng::Text name);
    ~Node();
    Node(const Node&) = delete;
    Node& operator=(const Node&) = delete;

    /// The value of this node, or of any node below it, has changed; the argument is the changed node. A slot
    /// may change further values, but not destroy nodes.
    sigc::signal<void(Node&)> signalChanged;

    /// Unique among siblings, never shown; used in files.
    const std::string& getId() const { return _id; }
    std::string getName() const { return _name.get(); }
    NodeType getType() const;
    /// Empty when there is none.
    std::string getUnit() const;
    /// Both bounds belong to the range of a Number or Integer; others have 0.
    double getMinimum() const;
    double getMaximum() const;
    /// The range with its unit as the user reads it, such as "0.05 … 100 A" (with no-break spaces); empty
    /// when there is none.
    std::string getRangeText() const;
    std::vector<std::string> getChoices() const;

    const Value& getValue() const { return _value; }
    /// The value of a node of that type; `std::bad_variant_access` for another one.
    double getNumber() const;
    long long getInteger() const;
    bool getBoolean() const;
    std::size_t getChoice() const;
    const std::string& getText() const;

    /// Refuses a value of the wrong type, outside the range or refused by the validation, with a `ValueError`
    /// that says why; the old value stays. A Number takes a whole number as well. Emits `signalChanged`
    /// when the value really changes.
    Kes::Result setValue(const Value& value);
    /// The value as the user reads it in the language of the process, without the unit: a choice by its name,
    /// a boolean as "yes" or "no", a number with a decimal point, in Russian with a comma.
    std::string toText() const;
    /// Reads what `toText` writes, and what users type: a decimal point or comma, blanks around, the unit
    /// behind the number. Refuses as `setValue`.
    Kes::Result setText(const std::string& text);
    /// Whether the text would be accepted, without changing anything.
    Kes::Result checkText(const std::string& text) const;

    /// A further rule, asked after type and range. Gets the new value; a failure's message gives the reason
    /// without naming the node. It may look at other nodes: when many values are read at once, they are all
    /// in place when it is asked.
    void setValidation(std::function<Kes::Result(const Value&)> validation);

    /// For a Text that people write in another way than files hold it, such as one with decimal commas: from
    /// the value to what `toText` gives, and from what a user types to the value. What is no such text comes
    /// out of `read` as it is, for the validation to refuse.
    void setNotation(std::function<std::string(const std::string&)> show,
                     std::function<std::string(const std::string&)> read);

    /// Tells whether the value plays a part with the present values of the other nodes; without it, it does.
    /// A value without a part is still checked and stored, but shown as out of use; a group is folded when a
    /// form opens.
    void setUsage(std::function<bool()> usage);
    bool isUsed() const;

    /// Marks a value that trees had not always: a written tree without it counts as complete, and gives it
    /// the value that it has now.
    void setIsLater() { _laterValue = _value; }

    /// Appends and returns the child. Only to a group; ids of siblings differ (else `std::invalid_argument`).
    Node& add(std::unique_ptr<Node> child);
    const std::vector<std::unique_ptr<Node>>& getChildren() const { return _children; }
    /// The node at a path of ids joined by "/", or null. The empty path is the node itself.
    Node* find(const std::string& path) const;

    /// The values of this node and of those below it as XML text, the same bytes for the same values in every
    /// locale and language; names, units and ranges are not part of it.
    std::string serialize() const;
    /// Reads what `serialize` of a tree with the same ids has written. All or nothing: on a failure no value
    /// has changed. Unknown ids are refused, missing ones keep their value unless `complete` demands them
    /// all (but see `setIsLater`).
    Kes::Result deserialize(const std::string& xml, bool complete = true);

private:
    friend class NodeXmlReader;
    friend class NodeXmlWriter;

    static std::unique_ptr<Node> _make(std::unique_ptr<NodeKind> kind, std::string id, lng::Text name);
    static std::unique_ptr<Node> _make(std::unique_ptr<NodeKind> kind, std::string id, lng::Text name,
                                       Value value);

    Kes::Result _refuse(std::string reason) const;
    /// Type and range only. A value of another type that means the same becomes one of this type.
    Kes::Result _check(Value& value) const;
    Kes::Result _validate(const Value& value) const;
    Kes::Result _parse(const std::string& text, Value& value) const;
    void _emitChanged();

    const std::unique_ptr<NodeKind> _kind;
    std::string _id;
    lng::Text _name;
    Value _value;
    std::optional<Value> _laterValue;
    std::function<Kes::Result(const Value&)> _validation;
    std::function<bool()> _usage;
    std::vector<std::unique_ptr<Node>> _children;
    Node* _parent = nullptr;
};

} // namespace KesTree
