#include "headless/data_listing.h"
#include "shell/data_listing_window.h"
#include "store/pattern_store.h"

HeadlessListingState HeadlessListing;

void InitHeadlessListing() {
    HeadlessListing = {};
}

bool DataListingIsOpen() {
    return HeadlessListing.open;
}

void ShowDataListing() {
    if (HeadlessListing.open) ++HeadlessListing.raised;
    HeadlessListing.open = true;
}

void DestroyDataListing() {
    HeadlessListing.open = false;
    HeadlessListing.lines.clear();
}

void ClearDataListing() {
    HeadlessListing.lines.clear();
    HeadlessListing.drawing = false;
}

bool AddDataListingLine(const char *line) {
    if (HeadlessListing.lines.size() >= HeadlessListing.room) return false;
    HeadlessListing.lines.emplace_back(line);
    return true;
}

void RedrawDataListing() {
    int held = LogHoldOpen(1);
    HeadlessListing.logHeld = held != 0;
    LogHoldOpen(held);
    HeadlessListing.drawing = true;
    ++HeadlessListing.redraws;
}
