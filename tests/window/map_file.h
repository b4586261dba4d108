// Where the globals of the program lie, by the map that the linker leaves beside it.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

// How far behind the start of the program's image the symbol lies, in bytes.
std::optional<uint64_t> OffsetInImage(const std::string &mapPath, const std::string &symbol);
