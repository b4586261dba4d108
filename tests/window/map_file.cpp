#include "window/map_file.h"

#include <fstream>
#include <sstream>

namespace {

// A symbol's line holds its address and its name alone.
std::optional<uint64_t> AddressIn(const std::string &line, const std::string &symbol) {
    std::istringstream words(line);
    std::string address, name, rest;
    if (!(words >> address >> name) || name != symbol || address.substr(0, 2) != "0x") return std::nullopt;
    // The image's base is written as an assignment.
    if (words >> rest && rest != "=") return std::nullopt;
    return std::stoull(address, nullptr, 16);
}

} // namespace

std::optional<uint64_t> OffsetInImage(const std::string &mapPath, const std::string &symbol) {
    std::ifstream map(mapPath);
    std::optional<uint64_t> base, address;
    for (std::string line; std::getline(map, line);) {
        if (!base) base = AddressIn(line, "__image_base__");
        if (!address) address = AddressIn(line, symbol);
    }
    if (!base || !address) return std::nullopt;
    return *address - *base;
}
