#pragma once

#include <KesTree/Node.h>

#include <optional>
#include <string>
#include <vector>

namespace KesTree {

/// Why a value is refused, in the language of the process and without the node's name; nothing when it is
/// not.
using Reason = std::optional<std::string>;

/// The unit of a number and the bounds between which it lies; an infinite bound is no bound.
class NodeRange {
public:
    NodeRange(lng::Text unit, double minimum, double maximum);

    std::string getUnit() const { return _unit.get(); }
    double getMinimum() const { return _minimum; }
    double getMaximum() const { return _maximum; }
    /// As users read it, such as "0.05 … 100 A"; empty without bounds.
    std::string getText() const;
    /// `shown` is the number as users read it.
    Reason check(double number, const std::string& shown) const;
    /// For a text that is no such number; `key` is that of the reason.
    std::string refuse(const char* key, const std::string& text) const;
    /// What a user types, without blanks around and without the unit, in whichever language.
    std::string takeNumber(const std::string& text) const;

private:
    std::string _withUnit(const std::string& number) const;

    lng::Text _unit;
    double _minimum;
    double _maximum;
};

/// What a node of one type holds: how its value is checked, shown, typed and stored. It does not hold the
/// value.
class NodeKind {
public:
    using Value = Node::Value;

    NodeKind() = default;
    virtual ~NodeKind() = default;
    NodeKind(const NodeKind&) = delete;
    NodeKind& operator=(const NodeKind&) = delete;

    virtual NodeType getType() const = 0;
    /// Looks at type and range. A value of another type that means the same becomes one of this type.
    virtual Reason check(Value& value) const = 0;
    /// The value as users read it.
    virtual std::string show(const Value& value) const = 0;
    /// The value that a user has typed; it may still lie outside the range.
    virtual Reason parse(const std::string& text, Value& value) const = 0;
    /// The value as files hold it, the same in every language.
    virtual std::string write(const Value& value) const = 0;
    /// The value that files hold as this text; none (monostate) when it is no such text.
    virtual Value read(const std::string& text) const = 0;

    /// Null for all but numbers.
    virtual const NodeRange* getRange() const { return nullptr; }
    /// Empty for all but a Choice.
    virtual std::vector<std::string> getChoices() const { return {}; }
    /// As `Node::setNotation`; all but a Text ignore it.
    virtual void setNotation(std::function<std::string(const std::string&)>,
                             std::function<std::string(const std::string&)>)
    {}
};

/// The user's text for a message: valid, on one line and not too long.
std::string quoted(const std::string& text);
/// Without blanks around; one that keeps a number and its unit on one line counts as a plain one.
std::string trimmed(std::string text);

} // namespace KesTree
