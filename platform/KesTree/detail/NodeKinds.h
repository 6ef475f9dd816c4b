#pragma once

#include <KesTree/detail/NodeKind.h>

namespace KesTree {

/// A group holds no value.
class GroupKind : public NodeKind {
public:
    NodeType getType() const override { return NodeType::Group; }
    Reason check(Value& value) const override;
    std::string show(const Value&) const override { return {}; }
    Reason parse(const std::string& text, Value& value) const override;
    std::string write(const Value&) const override { return {}; }
    Value read(const std::string&) const override { return {}; }
};

/// What the kinds of numbers share.
class RangedKind : public NodeKind {
public:
    explicit RangedKind(NodeRange range) : _range(range) {}

    const NodeRange* getRange() const override { return &_range; }

protected:
    const NodeRange _range;
};

class NumberKind : public RangedKind {
public:
    using RangedKind::RangedKind;

    NodeType getType() const override { return NodeType::Number; }
    Reason check(Value& value) const override;
    std::string show(const Value& value) const override;
    Reason parse(const std::string& text, Value& value) const override;
    std::string write(const Value& value) const override;
    Value read(const std::string& text) const override;
};

class IntegerKind : public RangedKind {
public:
    using RangedKind::RangedKind;

    NodeType getType() const override { return NodeType::Integer; }
    Reason check(Value& value) const override;
    std::string show(const Value& value) const override { return write(value); }
    Reason parse(const std::string& text, Value& value) const override;
    std::string write(const Value& value) const override;
    Value read(const std::string& text) const override;
};

class BooleanKind : public NodeKind {
public:
    NodeType getType() const override { return NodeType::Boolean; }
    Reason check(Value& value) const override;
    std::string show(const Value& value) const override;
    Reason parse(const std::string& text, Value& value) const override;
    std::string write(const Value& value) const override;
    Value read(const std::string& text) const override;
};

class ChoiceKind : public NodeKind {
public:
    explicit ChoiceKind(std::vector<lng::Text> choices) : _choices(std::move(choices)) {}

    NodeType getType() const override { return NodeType::Choice; }
    Reason check(Value& value) const override;
    std::string show(const Value& value) const override;
    Reason parse(const std::string& text, Value& value) const override;
    std::string write(const Value& value) const override;
    Value read(const std::string& text) const override;
    std::vector<std::string> getChoices() const override;

private:
    std::vector<lng::Text> _choices;
};

class TextKind : public NodeKind {
public:
    NodeType getType() const override { return NodeType::Text; }
    Reason check(Value& value) const override;
    std::string show(const Value& value) const override;
    Reason parse(const std::string& text, Value& value) const override;
    std::string write(const Value& value) const override;
    Value read(const std::string& text) const override { return text; }
    void setNotation(std::function<std::string(const std::string&)> show,
                     std::function<std::string(const std::string&)> read) override;

private:
    std::function<std::string(const std::string&)> _show;
    std::function<std::string(const std::string&)> _read;
};

} // namespace KesTree
