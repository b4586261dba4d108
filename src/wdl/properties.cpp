#include "store/state_table.h"
#include "wdl/compiler.h"
#include "wdl/error_listing.h"
#include "wdl/lexer.h"
#include "wdl/number_text.h"
#include <cstring>
#include <iterator>

namespace {

constexpr int MAX_FIELDS = 7;

// Words that mean nothing are passed over; whoever wants to know is told.
void WarnOfWord(const char *word) {
    WdlWarning(static_cast<uint32_t>(word - WdlText), "unknown property word", word);
}

// The next word of `text`, which goes on behind it; null behind the last one.
char *CutWord(char *&text) {
    text += strspn(text, BLOCK_SEPARATORS);
    if (*text == '\0') return nullptr;
    char *word = text;
    text += strcspn(text, BLOCK_SEPARATORS);
    if (*text != '\0') *text++ = '\0'; // never: the block's brace ends the last word
    return word;
}

// Cuts `text` at its separators; what follows the last field is not looked at.
int CutFields(char *text, char *fields[MAX_FIELDS]) {
    int count = 0;
    while (char *word = CutWord(text)) {
        if (count == MAX_FIELDS) {
            WarnOfWord(word);
        } else {
            fields[count++] = word;
        }
    }
    return count;
}

uint32_t ClockOf(const char *field) {
    char letter = *field;
    if (letter >= 'A' && letter <= 'H') return static_cast<uint32_t>(letter - 'A' + 1);
    if (letter != 'Z') WarnOfWord(field);
    return 0;
}

uint32_t PinTypeOf(const char *field) {
    switch (*field) {
    case 'I':
        return static_cast<uint32_t>(PinType::In);
    case 'O':
        return static_cast<uint32_t>(PinType::Out);
    case 'B':
        return static_cast<uint32_t>(PinType::Bid);
    case 'G':
        return static_cast<uint32_t>(PinType::Global);
    default:
        if (*field != 'T') WarnOfWord(field);
        return static_cast<uint32_t>(PinType::Test);
    }
}

uint32_t FormatOf(const char *field) {
    constexpr const char *names[] = {"", "NRZ", "RZ", "R1", "RC"};
    for (uint32_t i = 1; i < std::size(names); ++i) {
        if (strcmp(field, names[i]) == 0) return i;
    }
    if (strcmp(field, "None") != 0) WarnOfWord(field);
    return 0;
}

uint32_t StateTableOf(char *field) {
    int index = FindStateTable(field);
    if (index >= 0) return static_cast<uint32_t>(index);
    WarnOfWord(field);
    return 0;
}

// False, with `number` as it was, if the field does not begin with one.
bool NumberOf(const char *field, uint32_t &number) {
    const char *digits = field + (*field == '-' || *field == '+');
    if (*digits == '\0' || digits[strspn(digits, "0123456789")] != '\0') WarnOfWord(field);
    return ReadDecimal(field, number);
}

} // namespace

// The fields fill from the right: the shortest blocks name just the state table.
int ReadProperties(Pattern *pattern, char *text) {
    char *fields[MAX_FIELDS];
    int count = CutFields(text, fields);
    if (count == 0) return 0;
    char **field = fields;
    pattern->setClock(count == 7 ? ClockOf(*field++) : 0);
    pattern->setPinType(count >= 6 ? PinTypeOf(*field++) : 0);
    pattern->setStateTable(StateTableOf(*field++));
    if (count < 5) {
        while (field < fields + count) WarnOfWord(*field++);
        return 1;
    }
    pattern->setFormat(FormatOf(*field++));
    pattern->delay = 0;
    NumberOf(*field++, pattern->delay);
    uint32_t number = 0;
    if (!NumberOf(*field++, number)) return 1;
    pattern->period = static_cast<int32_t>(number);
    number = 0;
    NumberOf(*field, number);
    pattern->duty = static_cast<uint16_t>(number);
    return 1;
}
