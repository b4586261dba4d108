#include "store/signal_name.h"

#include "config/settings.h"
#include <algorithm>
#include <array>
#include <charconv>
#include <cstring>

NameCharacters NameChars = {'[', ']', '_', '.'};

namespace {

// With "(" as the separator of levels the other brackets are part of the names.
bool OpensRange(char c) {
    if (c == '[') return true;
    return Settings.HierChar != '(' && (c == '{' || c == '<' || c == '(');
}

bool ClosesRange(char c) {
    if (c == ']') return true;
    return Settings.HierChar != '(' && (c == '}' || c == '>' || c == ')');
}

bool IsBlank(char c) {
    return static_cast<signed char>(c) <= ' ';
}

// Letters, digits and "$", which stay as they are in every name unless they separate its levels.
constexpr std::array<bool, 256> ORDINARY = [] {
    std::array<bool, 256> ordinary{};
    for (char c : std::string_view("0123456789abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ$")) {
        ordinary[static_cast<uint8_t>(c)] = true;
    }
    return ordinary;
}();
bool IsOrdinary(char c) {
    return ORDINARY[static_cast<uint8_t>(c)];
}

bool IsListSeparator(char c) {
    return c == ',' || c == '\\';
}

// A bus range as written between its brackets: first, last and step.
struct BusRange {
    int64_t first = 0;
    int64_t last = 0;
    int64_t step = 1;

    // How many members it has.
    uint64_t count() const {
        if ((last - first) * step < 0) return 0;
        return static_cast<uint64_t>((last - first) / step) + 1;
    }
};

// One element of a name list: a plain name, or a stem up to and with its opening bracket, and the range.
struct NameElement {
    std::string_view stem;
    bool isRange = false;
    char closing = 0;
    BusRange range;
};

// Reads a decimal integer as scanf's "%d" does, held within 32 bits. Advances `text` behind it.
bool ScanInteger(std::string_view &text, int64_t &value) {
    size_t i = 0;
    while (i < text.size() && (text[i] == ' ' || (text[i] >= '\t' && text[i] <= '\r'))) ++i;
    bool negative = false;
    if (i < text.size() && (text[i] == '-' || text[i] == '+')) negative = text[i++] == '-';
    size_t start = i;
    int64_t n = 0;
    for (; i < text.size() && text[i] >= '0' && text[i] <= '9'; ++i) {
        n = n * 10 + (text[i] - '0');
        if (n > INT32_MAX) n = INT32_MAX;
    }
    if (i == start) return false;
    value = negative ? -n : n;
    text.remove_prefix(i);
    return true;
}

// `text` goes from behind the opening bracket through the closing one.
BusRange ScanRange(std::string_view text) {
    BusRange range;
    int64_t *const fields[] = {&range.first, &range.last, &range.step};
    int found = 0;
    for (int64_t *field : fields) {
        // The closing bracket is still there.
        if (found > 0) text.remove_prefix(1);
        if (!ScanInteger(text, *field)) break;
        ++found;
    }
    if (range.step == 0) range.step = 1;
    if (found == 1) {
        range.last = range.first;
    } else if (range.last < range.first) {
        range.step = -range.step;
    }
    return range;
}

// The place of the opening bracket that the last character of `name` closes; 0 if there is none, or if it
// stands first.
size_t RangeStart(std::string_view name) {
    if (name.empty() || !ClosesRange(name.back())) return 0;
    size_t i = name.size() - 1;
    while (i > 0 && !OpensRange(name[i])) --i;
    return i;
}

NameElement ParseElement(std::string_view text) {
    NameElement element;
    size_t open = RangeStart(text);
    element.isRange = open > 0;
    element.stem = open > 0 ? text.substr(0, open + 1) : text;
    if (open > 0) {
        element.closing = text.back();
        element.range = ScanRange(text.substr(open + 1));
    }
    return element;
}

// Takes the next element off `text`. The first character belongs to it whatever it is.
std::string_view TakeElement(const char *&text) {
    const char *start = text++;
    while (*text != '\0' && !IsListSeparator(*text)) ++text;
    std::string_view element(start, static_cast<size_t>(text - start));
    if (*text != '\0') ++text;
    return element;
}

// The number that `digits` is the plain decimal text of.
bool ReadCanonicalNumber(std::string_view digits, int64_t &number) {
    char text[16];
    auto read = std::from_chars(digits.data(), digits.data() + digits.size(), number);
    if (read.ec != std::errc() || read.ptr != digits.data() + digits.size()) return false;
    if (number > INT32_MAX || number < INT32_MIN) return false;
    auto written = std::to_chars(text, text + sizeof text, number);
    return digits == std::string_view(text, static_cast<size_t>(written.ptr - text));
}

// The position of `member` in the element, counted from 1, or 0.
uint64_t PositionInElement(const NameElement &element, std::string_view member) {
    if (!element.isRange) return member == element.stem ? 1 : 0;
    if (member.size() < element.stem.size() + 2 || !member.starts_with(element.stem)) return 0;
    if (member.back() != element.closing) return 0;
    std::string_view digits = member.substr(element.stem.size());
    digits.remove_suffix(1);
    int64_t number = 0;
    if (!ReadCanonicalNumber(digits, number)) return 0;
    int64_t distance = number - element.range.first;
    if (distance % element.range.step != 0) return 0;
    int64_t index = distance / element.range.step;
    if (index < 0 || static_cast<uint64_t>(index) >= element.range.count()) return 0;
    return static_cast<uint64_t>(index) + 1;
}

NameStem StemOf(std::string_view text) {
    NameElement element = ParseElement(text);
    const BusRange &range = element.range;
    return {element.stem, std::min(range.first, range.last), std::max(range.first, range.last)};
}

int VisitRange(const NameElement &element, MemberCallback callback, void *context) {
    char name[NAME_SIZE + 16];
    size_t stem = element.stem.size() < NAME_SIZE ? element.stem.size() : NAME_SIZE - 1;
    memcpy(name, element.stem.data(), stem);
    const BusRange &range = element.range;
    for (int64_t i = range.first; (range.last - i) * range.step >= 0; i += range.step) {
        char *end = std::to_chars(name + stem, name + sizeof name - 2, i).ptr;
        *end++ = element.closing;
        *end = '\0';
        if (int result = callback(name, context)) return result;
    }
    return 0;
}

int VisitPlain(std::string_view element, MemberCallback callback, void *context) {
    char name[NAME_SIZE];
    size_t length = element.size() < NAME_SIZE ? element.size() : NAME_SIZE - 1;
    memcpy(name, element.data(), length);
    name[length] = '\0';
    return callback(name, context);
}

} // namespace

void CanonicalizeName(char *name) {
    const char *start = name;
    // Most names begin with what stays as it is, and many end with it.
    if (!IsOrdinary(NameChars.HierarchyChar)) {
        while (IsOrdinary(*name)) ++name;
    }
    if (*name == '\0') return;
    const char *in = name;
    char *out = name;
    bool inRange = false;
    int separators = 0;
    for (char c = *in; c != '\0'; c = *++in) {
        if (IsBlank(c)) continue;
        if (inRange) {
            if (ClosesRange(c)) {
                *out++ = NameChars.BusCloseChar;
                inRange = false;
            } else if (c == ',' || c == '-' || c == ';' || c == ':') {
                if (++separators <= 2) *out++ = ':';
            } else if (c >= '0' && c <= '9' && separators <= 2) {
                *out++ = c;
            }
        } else if (c == '-' || c == NameChars.HierarchyChar) {
            *out++ = Settings.HierChar;
        } else if ((c == '_' || c == '\'') && (out == start || out[-1] == Settings.HierChar)) {
            *out++ = NameChars.NameBarChar;
        } else if (OpensRange(c)) {
            *out++ = NameChars.BusOpenChar;
            inRange = true;
            separators = 0;
        } else if (ClosesRange(c)) {
            continue;
        } else {
            *out++ = c == '\\' ? ',' : c;
        }
    }
    if (inRange) *out++ = NameChars.BusCloseChar;
    *out = '\0';
}

int ForEachBusMember(const char *text, MemberCallback callback, void *context) {
    while (*text != '\0') {
        std::string_view text1 = TakeElement(text);
        NameElement element = ParseElement(text1);
        int result = element.isRange ? VisitRange(element, callback, context)
                                     : VisitPlain(element.stem, callback, context);
        if (result) return result;
    }
    return 0;
}

uint32_t CountBusMembers(const char *text) {
    uint64_t count = 0;
    while (*text != '\0') {
        NameElement element = ParseElement(TakeElement(text));
        count += element.isRange ? element.range.count() : 1;
    }
    return count > UINT32_MAX ? UINT32_MAX : static_cast<uint32_t>(count);
}

uint32_t BusMemberPosition(const char *text, std::string_view member) {
    uint64_t before = 0;
    while (*text != '\0') {
        NameElement element = ParseElement(TakeElement(text));
        if (uint64_t position = PositionInElement(element, member)) {
            return static_cast<uint32_t>(before + position);
        }
        before += element.isRange ? element.range.count() : 1;
    }
    return 0;
}

void ForEachNameStem(const char *text, void (*callback)(const NameStem &stem, void *context), void *context) {
    while (*text != '\0') callback(StemOf(TakeElement(text)), context);
}

NameStem MemberStem(std::string_view member) {
    return StemOf(member);
}

void TrimName(char *text) {
    size_t length = strlen(text);
    while (length > 1 && IsBlank(text[length - 1])) text[--length] = '\0';
    size_t blanks = strspn(text, " ");
    if (blanks > 0) memmove(text, text + blanks, length - blanks + 1);
}

void StripInversionMarks(const char *name, char *out, bool &inverted) {
    inverted = false;
    bool atWordStart = true;
    bool inBracket = false;
    for (; *name != '\0'; ++name) {
        char c = *name;
        if (atWordStart && (c == '\'' || c == '_')) {
            inverted = true;
            atWordStart = false;
            continue;
        }
        *out++ = c;
        if (inBracket) {
            inBracket = c != ']' && c != '>' && c != '}';
        } else {
            inBracket = c == '[' || c == '<' || c == '{';
            atWordStart = IsBlank(c) || IsListSeparator(c) || c == '-' || c == '.';
        }
    }
    *out = '\0';
}

bool EqualIgnoringCase(std::string_view a, std::string_view b) {
    auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; };
    if (a.size() != b.size()) return false;
    for (size_t i = 0; i < a.size(); ++i) {
        if (lower(a[i]) != lower(b[i])) return false;
    }
    return true;
}
