// What the reader of a file knows between two statements, and what it would make of the next one.
#pragma once

#include "edit/buses.h"
#include "store/pattern_store.h"
#include <bitset>
#include <vector>

// A statement for a pattern. An empty one defines it without items; another one follows later.
struct Statement {
    uint16_t id = 0;
    bool isEmpty = false;
};

// True if the items of the pattern, written with plus signs, read as a composite: it is none for the reader
// if it does not begin with a reference or has no other one.
bool ReadsAsComposite(const Pattern *pattern);

// True if an item of the reference pattern leads to `target`.
bool LooksAt(const Pattern *reference, uint16_t target);

// What the reader would find by one name.
struct Finds {
    std::vector<Holder> holders; // the bits of patterns of their own that have the name among theirs
    uint16_t bearer = 0;         // the pattern that bears the name, in whatever case; 0 for none
    Holder borne;                // the bit that it is or looks at
};

// A member of a reference pattern's name: the bit that the pattern has of it, and what is found by the member
// as it stands, and then by the name under which it stands by itself.
struct MemberFinds {
    Holder bit;
    Finds asItStands;
    Finds byItself;
};

// The reader has read statements for patterns of the store, and knows those that they have defined or used.
// A composite holds bits for others until its items have been read. The names are looked at once, at first.
class ReaderView {
public:
    ReaderView();

    bool knows(uint16_t id) const { return made[id] != 0; }
    // 0 for what is not known; of two others the newer has the higher one.
    uint32_t rank(uint16_t id) const { return made[id]; }
    bool hasRead(uint16_t id) const { return defined.test(id); }
    bool isComposite(uint16_t id) const { return composites.test(id); }
    // True if the next statement is read as the pattern that it is written for, and its items as references
    // to the patterns that they lead to.
    bool comesBack(Statement statement) const;
    // False if no statements that could follow now make this pattern, which is not known yet, what it is.
    bool mayComeBack(uint16_t id) const;

    void read(Statement statement);
    void unreadLast();
    // In the order in which they were read.
    const std::vector<Statement> &statementsRead() const { return statements; }
    // The patterns that are known, in the order in which they came to be.
    const std::vector<uint16_t> &known() const { return makings; }
    // How many of the statements were not empty.
    size_t definitions() const { return defined.count(); }

    // The named patterns that the items lead to, in their order, those of nested patterns among them; of a
    // reference pattern none.
    const std::vector<uint16_t> &usesOf(uint16_t id) const { return uses[id]; }
    // The patterns that would turn a statement of this one, which is none that looks at others, into such a
    // one.
    const std::vector<uint16_t> &rivalsOf(uint16_t id) const { return rivals[id]; }
    // Of a reference pattern.
    const std::vector<MemberFinds> &membersOf(uint16_t id) const { return members[id]; }

private:
    void make(uint16_t id);
    bool isPlain(uint16_t id) const;
    bool wouldBePlain(uint16_t id) const;
    Holder found(const MemberFinds &member) const;
    bool mayBePlain(uint16_t id) const;
    bool mayBeFound(uint16_t reference, const MemberFinds &member) const;
    bool mayBeHeld(uint16_t reference, const Finds &finds, Holder bit) const;
    bool isHeldForGood(const Finds &finds) const;

    // By the ids of the patterns.
    std::vector<std::vector<uint16_t>> uses;
    std::vector<std::vector<uint16_t>> rivals;
    std::vector<std::vector<MemberFinds>> members;
    std::bitset<MAX_PATTERNS> composites;
    std::bitset<MAX_PATTERNS> used; // by an item of a named pattern

    std::array<uint16_t, MAX_PATTERNS> made = {};
    std::vector<uint16_t> makings; // the ids in the order in which they came to be known
    std::bitset<MAX_PATTERNS> defined;
    std::vector<Statement> statements;
    std::vector<size_t> madeBefore; // the number of makings before each statement
};
