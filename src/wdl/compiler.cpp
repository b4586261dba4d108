#include "wdl/compiler.h"

#include "config/settings.h"
#include "edit/buses.h"
#include "store/mutators.h"
#include "store/pattern_store.h"
#include "store/queries.h"
#include "store/signal_name.h"
#include "wdl/error_listing.h"
#include "wdl/lexer.h"
#include "wdl/nesting.h"
#include "wdl/number_text.h"
#include <cstring>

int32_t WdlVersion = 4;
int32_t NodeHasFormat = 0;

namespace {

// The pattern whose statement is being read, 0 before its name.
uint16_t statementId = 0;

// What one call of CompileStatement fills.
struct Body {
    uint16_t ownId = 0;    // 0 without a current record
    bool isNew = false;    // made by this statement
    bool hasBlock = false; // has its parameters from it
    bool composite = false;
    bool done = false;

    Pattern *record() const { return PatternFromId(ownId); }
};

// --- failures of the store ---

void ReportNoPattern() {
    uint32_t id = 1;
    while (id < MAX_PATTERNS && PatternInUse(id)) ++id;
    WdlSyntaxError(id == MAX_PATTERNS ? "Exceeding maximum number of patterns"
                                      : "Unable to reallocate pattern memory");
}

void ReportNoItem(const Pattern *pattern) {
    bool full = pattern->used() + sizeof(PatternItem) > MAX_RECORD_SIZE;
    WdlSyntaxError(full ? "Pattern has too many items" : "Unable to reallocate pattern memory");
}

bool AcceptReference(uint16_t pattern, uint16_t target) {
    NestingFault fault = NoteReference(pattern, target, statementId);
    if (fault == NestingFault::Circle) WdlSyntaxError("Pattern refers to itself");
    if (fault == NestingFault::TooDeep) WdlSyntaxError("Patterns are nested too deeply");
    return fault == NestingFault::None;
}

// --- left of the "=" ---

// The references of a bit or bus of existing bits were made from its name.
void NoteSlices(const Pattern *pattern) {
    for (uint32_t i = 0; i < pattern->itemCount; ++i) {
        if (!AcceptReference(pattern->id, pattern->item(i).patternId())) return;
    }
}

void BeginPattern(Body &body) {
    if (body.ownId != 0) {
        WdlSyntaxError("Defining second name for pattern");
        return;
    }
    if (WdlText[0] == '\0') { // nothing but closing brackets
        WdlSyntaxError("Missing pattern name");
        return;
    }
    bool isNew = FindPattern(WdlText) == nullptr;
    Pattern *pattern = FindOrCreateNode(WdlText, 0);
    if (!pattern) {
        // A bus that is too wide has been told of, and is no error until something is said about it.
        if (CountBusMembers(WdlText) <= MAX_BUS_WIDTH) ReportNoPattern();
        return;
    }
    body.ownId = pattern->id;
    body.isNew = isNew;
    statementId = pattern->id;
    if (pattern->kind() == PatternKind::Reference) {
        NoteSlices(pattern);
    } else if (pattern->itemCount != 0) {
        WdlSyntaxError("Multiple definition of pattern");
    }
}

void BeginItems(const Body &body) {
    if (body.ownId == 0) {
        WdlSyntaxError("Missing pattern name");
        return;
    }
    if (body.record()->kind() == PatternKind::Reference) {
        WdlSyntaxError("Defining data for reference pattern");
        return;
    }
    WdlRightSide = 1;
    if (body.record()->format() != SignalFormat::None) NodeHasFormat = 1;
}

// A statement without "=" is over. The search for the members of a new bus could not know that; a bus that
// only looks at bits finds them in another case, too, so that each one that was saved comes back.
void EndBareStatement(const Body &body) {
    if (!body.isNew || !body.record()->isBus() || body.record()->kind() != PatternKind::Plain) return;
    if (!FollowMembers(body.record())) {
        ReportNoPattern();
        return;
    }
    Pattern *bus = body.record();
    if (bus->kind() == PatternKind::Plain) return;
    if (!body.hasBlock) bus->setClock(0);
    NoteSlices(bus);
}

void CompileBlock(Body &body) {
    if (body.ownId == 0) {
        WdlSyntaxError("Missing pattern name");
    } else if (body.record()->hasProperties()) {
        body.hasBlock = true;
        if (!ReadProperties(body.record(), WdlText + 1)) WdlSyntaxError("Missing pattern name");
    } else if (body.record()->kind() == PatternKind::Reference) {
        WdlSyntaxError("Properties not allowed on reference pattern");
    } else {
        WdlSyntaxError("Properties not allowed on a sub pattern");
    }
}

void StoreDirective(uint32_t value) {
    auto number = static_cast<int32_t>(value);
    switch (WdlToken) {
    case TOKEN_VERSION:
        WdlVersion = number;
        break;
    // The master clock always has a period: 0 becomes 1, as in the dialog.
    case TOKEN_MASTER_CLOCK_MULT:
        Settings.ClockMultiplier = value == 0 ? 1 : value;
        break;
    case TOKEN_SMALLEST_UNIT:
        Settings.BasicUnit = number;
        break;
    case TOKEN_END_TIME:
        Settings.EndTime = value;
        break;
    case TOKEN_AUTO_ASSIGN:
        Settings.AutoClockAssign = value != 0;
        break;
    case TOKEN_DECIMALS:
        Settings.Decimals = number > 3 ? 3 : number < 0 ? 0 : number;
        break;
    default:
        break; // TOKEN_AUTO_EXPORT and TOKEN_BUS_REVERSE have no effect any more
    }
}

// A directive runs to the next ";", whatever stands before it; only a number behind the "=" is looked at.
void WarnOfDirective(const char *value) {
    constexpr const char *blanks = " \t\v\f\r";
    value += strspn(value, blanks);
    value += *value == '-' || *value == '+';
    value += strspn(value, "0123456789");
    value += strspn(value, blanks);
    std::string_view rest = value;
    while (!rest.empty() && strchr(blanks, rest.back())) rest.remove_suffix(1);
    auto offset = static_cast<uint32_t>(value - WdlText);
    bool otherLine = WdlPlaceInToken(offset).line != WdlPlaceInToken(0).line;
    bool isNumber =
        WdlToken != TOKEN_VERSION && WdlToken != TOKEN_AUTO_EXPORT && WdlToken != TOKEN_BUS_REVERSE;
    if (WdlPushback != ';' || (otherLine && !rest.empty())) {
        WdlWarning(
            0, rest.empty() ? "directive without its end" : "directive without its end, passed over:", rest);
    } else if (isNumber && !rest.empty()) {
        WdlWarning(offset, "passed over:", rest);
    }
}

void CompileDirective() {
    const char *equals = strchr(WdlText, '=');
    if (!equals) {
        WdlSyntaxError("Invalid '%' keyword");
        return;
    }
    if (WarningHook) WarnOfDirective(equals + 1);
    if (equals[1] == '\0') return;
    uint32_t value = 0;
    ReadDecimal(equals + 1, value);
    StoreDirective(value);
}

void CompileLeft(Body &body) {
    switch (WdlToken) {
    case TOKEN_SEMICOLON:
        body.done = true;
        break;
    case TOKEN_EQUALS:
        BeginItems(body);
        break;
    case TOKEN_NAME:
        BeginPattern(body);
        break;
    case TOKEN_BLOCK:
        CompileBlock(body);
        break;
    case TOKEN_VERSION:
    case TOKEN_MASTER_CLOCK_MULT:
    case TOKEN_SMALLEST_UNIT:
    case TOKEN_END_TIME:
    case TOKEN_AUTO_ASSIGN:
    case TOKEN_AUTO_EXPORT:
    case TOKEN_DECIMALS:
    case TOKEN_BUS_REVERSE:
        CompileDirective();
        break;
    default: // never: the scanner finds nothing else there
        WdlSyntaxError("Invalid operation on left of '='");
        break;
    }
}

// --- right of the "=" ---

void AppendReference(const Body &body, uint16_t target) {
    Pattern *pattern = body.record();
    PatternKind kind = body.composite ? PatternKind::Composite : PatternKind::Plain;
    if (!InsertReference(pattern, kind, pattern->itemCount, target, 1, 1, 0, 0, 0)) {
        ReportNoItem(body.record());
    }
}

void CompileTransition(const Body &body) {
    Pattern *pattern = body.record();
    uint32_t value = 0;
    uint32_t duration = 0;
    if (pattern->isBus()) {
        ReadHexadecimal(WdlText, value);
    } else {
        ReadDecimal(WdlText, value);
    }
    if (WdlNextToken() != TOKEN_NUMBER) {
        WdlSyntaxError("Missing duration");
        return;
    }
    ReadDecimal(WdlText, duration);
    if (!InsertTransition(pattern, pattern->itemCount, value, duration)) ReportNoItem(body.record());
}

// The data items that come next, as far as they are plain to see.
void CompileTransitions(const Body &body) {
    Pattern *pattern = body.record();
    uint32_t value = 0;
    uint32_t duration = 0;
    while (WdlReadPair(pattern->isBus(), value, duration)) {
        pattern = InsertTransition(pattern, pattern->itemCount, value, duration);
        if (!pattern) {
            ReportNoItem(body.record());
            return;
        }
        if (WdlErrorCount != 0) return; // the line behind the item may be too long
    }
}

void CompileUse(const Body &body) {
    const Pattern *target = FindPattern(WdlText);
    if (!target) target = CreatePattern(0, WdlText, 0);
    if (!target) {
        ReportNoPattern();
        return;
    }
    uint16_t targetId = target->id;
    if (AcceptReference(body.ownId, targetId)) AppendReference(body, targetId);
}

void CompileNested(const Body &body) {
    Pattern *nested = CreatePattern(0, "", body.record()->width);
    if (!nested) {
        ReportNoPattern();
        return;
    }
    uint16_t nestedId = nested->id;
    if (!AcceptReference(body.ownId, nestedId)) return;
    if (CompileStatement(PatternFromId(nestedId)) == 0) AppendReference(body, nestedId);
}

void CompilePlus(Body &body) {
    if (body.composite) return;
    const Pattern *pattern = body.record();
    if (pattern->itemCount == 1 && pattern->item(0).isReference()) {
        body.composite = true;
    } else {
        WdlSyntaxError("Invalid composite bus formation");
    }
}

uint16_t LastItem(const Pattern *pattern) {
    return static_cast<uint16_t>(pattern->itemCount - 1);
}

// True if the last item is a reference, which can be scaled, repeated and so on; else tells which it is not.
bool LastIsReference(const Pattern *pattern, const char *noItem, const char *dataItem) {
    if (pattern->itemCount == 0) {
        WdlSyntaxError(noItem);
        return false;
    }
    if (!pattern->item(LastItem(pattern)).isReference()) {
        WdlSyntaxError(dataItem);
        return false;
    }
    return true;
}

// The number behind the mark of a scale or repeat, cut to 16 bits.
uint32_t CountInText() {
    uint32_t count = 0;
    ReadDecimal(WdlText + 1, count);
    return count & 0xFFFF;
}

void CompileScale(Pattern *pattern) {
    if (!LastIsReference(pattern, "Nothing to scale", "May not scale a transition")) return;
    if (uint32_t scale = CountInText()) {
        SetItemScale(pattern, LastItem(pattern), scale);
    } else {
        WdlSyntaxError("Invalid scale factor");
    }
}

void CompileRepeat(Pattern *pattern) {
    if (!LastIsReference(pattern, "Nothing to repeat", "May not repeat a transition")) return;
    if (uint32_t repeat = CountInText()) {
        SetItemRepeat(pattern, LastItem(pattern), repeat);
    } else {
        WdlSyntaxError("Invalid repeat count");
    }
}

void CompileForever(Body &body) {
    Pattern *pattern = body.record();
    if (pattern->nameLength == 0) {
        WdlSyntaxError("Nested patterns may not repeat forever");
    } else if (!pattern->hasProperties()) {
        WdlSyntaxError("Patterns may not repeat forever");
    } else if (LastIsReference(pattern, "Nothing to repeat forever", "May not repeat a transition")) {
        if (WdlNextToken() != TOKEN_SEMICOLON) WdlSyntaxError("Repeat forever must be at end of line");
        SetItemRepeat(pattern, LastItem(pattern), REPEAT_FOREVER);
        body.done = true;
    }
}

void CompileForcedFormat(Pattern *pattern, SignalFormat format) {
    constexpr const char *noItem = "No pattern to force pin type";
    if (!LastIsReference(pattern, noItem, "May not set pin type on a transition")) return;
    if (NodeHasFormat) {
        // The words say the opposite of the rule, but the rule is meant: a node's own format excludes these.
        WdlSyntaxError("May only force pin types in nodes with types");
        return;
    }
    SetItemFormat(pattern, LastItem(pattern), static_cast<uint32_t>(format));
}

void CompileRight(Body &body) {
    switch (WdlToken) {
    case TOKEN_NUMBER:
        CompileTransition(body);
        break;
    case TOKEN_SEMICOLON:
    case TOKEN_CLOSE:
        body.done = true;
        break;
    case TOKEN_SCALE:
        CompileScale(body.record());
        break;
    case TOKEN_REPEAT:
        CompileRepeat(body.record());
        break;
    case TOKEN_FOREVER:
        CompileForever(body);
        break;
    case TOKEN_OPEN:
        CompileNested(body);
        break;
    case TOKEN_PLUS:
        CompilePlus(body);
        break;
    case TOKEN_USE:
        CompileUse(body);
        break;
    case TOKEN_NRZ:
        CompileForcedFormat(body.record(), SignalFormat::NRZ);
        break;
    case TOKEN_RZ:
        CompileForcedFormat(body.record(), SignalFormat::RZ);
        break;
    case TOKEN_R1:
        CompileForcedFormat(body.record(), SignalFormat::R1);
        break;
    case TOKEN_RC:
        CompileForcedFormat(body.record(), SignalFormat::RC);
        break;
    default:
        WdlSyntaxError("Invalid operation on right of '='");
        break;
    }
}

} // namespace

int CompileStatement(Pattern *pattern) {
    Body body;
    if (pattern) {
        body.ownId = pattern->id;
    } else {
        WdlRightSide = 0;
        WdlPendingToken = 0;
        NodeHasFormat = 0;
        statementId = 0;
    }
    while (!body.done && WdlErrorCount == 0) {
        if (WdlRightSide) CompileTransitions(body);
        if (WdlErrorCount != 0 || WdlNextToken() == TOKEN_END) break;
        if (WdlRightSide) {
            CompileRight(body);
        } else {
            CompileLeft(body);
        }
    }
    if (WdlRightSide == 0 && WdlErrorCount == 0) EndBareStatement(body);
    return WdlErrorCount;
}

// A statement begins on a new line: what follows its ";" on the line is not looked at.
int CompileWdl(TextReader *file, const char *path) {
    InitWdlLexer(file);
    OpenErrorListing(path);
    NestingReset();
    while (WdlErrorCount == 0 && WdlReadLine() != 0) CompileStatement(nullptr);
    CloseErrorListing();
    return WdlErrorCount == 0 && !file->failed();
}
