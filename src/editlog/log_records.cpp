#include "editlog/log_records.h"

void LogDelay(uint16_t, uint32_t, uint32_t) {}
void LogItemValue(uint16_t, uint16_t, uint32_t, uint32_t) {}
void LogItemDuration(uint16_t, uint16_t, uint32_t, uint32_t) {}
void LogItemRepeat(uint16_t, uint16_t, uint16_t, uint16_t) {}
void LogItemScale(uint16_t, uint16_t, uint16_t, uint16_t) {}
void LogItemFormat(uint16_t, uint16_t, uint8_t, uint8_t) {}
void LogPatternParams(uint16_t, const LoggedParams &, const LoggedParams &) {}
void LogRename(uint16_t, const char *, const char *) {}
void LogTransition(int, uint16_t, uint16_t, uint32_t, uint32_t) {}
void LogReference(int, uint16_t, uint32_t, uint16_t, uint16_t, uint16_t, uint16_t, uint8_t, uint8_t,
                  uint8_t) {}
void LogPattern(int, uint16_t, uint16_t, const char *) {}
void LogRow(int, uint16_t, uint16_t) {}
