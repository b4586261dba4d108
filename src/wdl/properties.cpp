#include "store/state_table.h"
#include "wdl/compiler.h"
#include "wdl/number_text.h"
#include <cstring>
#include <iterator>

namespace {

constexpr int MAX_FIELDS = 7;

// Cuts `text` at its separators; what follows the last field is not looked at.
int CutFields(char *text, char *fields[MAX_FIELDS]) {
    constexpr const char *separators = " ,\t}";
    int count = 0;
    while (count < MAX_FIELDS) {
        text += strspn(text, separators);
        if (*text == '\0') break;
        fields[count++] = text;
        text += strcspn(text, separators);
        if (*text != '\0') *text++ = '\0';
    }
    return count;
}

uint32_t ClockOf(const char *field) {
    char letter = *field;
    return letter >= 'A' && letter <= 'H' ? static_cast<uint32_t>(letter - 'A' + 1) : 0;
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
        return static_cast<uint32_t>(PinType::Test);
    }
}

uint32_t FormatOf(const char *field) {
    constexpr const char *names[] = {"", "NRZ", "RZ", "R1", "RC"};
    for (uint32_t i = 1; i < std::size(names); ++i) {
        if (strcmp(field, names[i]) == 0) return i;
    }
    return 0;
}

uint32_t StateTableOf(char *field) {
    int index = FindStateTable(field);
    return index < 0 ? 0 : static_cast<uint32_t>(index);
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
    if (count < 5) return 1;
    pattern->setFormat(FormatOf(*field++));
    pattern->delay = 0;
    ReadDecimal(*field++, pattern->delay);
    uint32_t number = 0;
    if (!ReadDecimal(*field++, number)) return 1;
    pattern->period = static_cast<int32_t>(number);
    number = 0;
    ReadDecimal(*field, number);
    pattern->duty = static_cast<uint16_t>(number);
    return 1;
}
