#include "unit/edit/editing_fixture.h"

#include "display/wave_view.h"
#include "edit/clipboard.h"
#include "edit/show_selection.h"
#include "editlog/edit_log.h"
#include "editlog/replay.h"
#include "headless/headless.h"
#include "headless/surface_cairo.h"
#include "shell/commands.h"
#include "shell/mode_gestures.h"
#include "shell/mouse_gesture.h"
#include "store/pattern_store.h"
#include "store/queries.h"
#include <cstring>

void EditingFixture::SetUp() {
    FreshStore::SetUp();
    InitHeadlessSurface();
    InitCommands();
    InitMouseGesture();
    InitModeGestures();
    snprintf(EditLog.LogFileName, sizeof EditLog.LogFileName, "%s",
             scratch.write("document._KL", "").c_str());
    Headless.panesExist = true;
    DisplayOpen = 1;
    OpenEditDialog();
}

void EditingFixture::TearDown() {
    EXPECT_EQ(HeapFault(), "");
    LogDeleteFile();
    FreshStore::TearDown();
}

std::string EditingFixture::items(uint16_t id) {
    std::string text;
    for (uint32_t i = 0; i < PatternFromId(id)->itemCount; i++) {
        const PatternItem &item = PatternFromId(id)->item(i);
        text += i ? " " : "";
        if (item.isReference())
            text += "[" + std::to_string(item.patternId()) + " *" + std::to_string(item.scale()) + " #" +
                    std::to_string(item.repeat()) + "]";
        else
            text += std::to_string(item.value()) + ":" + std::to_string(item.duration());
    }
    return text;
}

uint16_t EditingFixture::select(uint16_t root, TimeVal t1, TimeVal t2) {
    ValidateDurations();
    SelectRange(PatternFromId(root), t1, t2, 0, 0);
    ShowSelection();
    return EditSelection.SelKind;
}

uint16_t EditingFixture::click(uint16_t root, TimeVal time) {
    ValidateDurations();
    SelectRange(PatternFromId(root), time, time, 0, 1);
    ShowSelection();
    return EditSelection.SelKind;
}

std::string EditingFixture::frame() {
    if (EditSelection.SelKind == SEL_NONE) return "none";
    const SelFrame &frame = DeepestFrame();
    return std::to_string(frame.patternId) + "/" + std::to_string(frame.item) + " " +
           std::to_string(frame.start) + "-" + std::to_string(frame.end);
}

int EditingFixture::actions() {
    LogFlush();
    std::string bytes = ReadWholeFile(EditLog.LogFileName);
    int marks = 0;
    for (size_t at = 0; at + 4 <= static_cast<size_t>(EditLog.rEofPtr);) {
        uint32_t word = LogWordAt(reinterpret_cast<const uint8_t *>(bytes.data()) + at);
        marks += word == ACTION_MARK;
        at += word == ACTION_MARK ? 4 : word;
    }
    return marks;
}

bool EditingFixture::undoGives(const std::string &before) {
    if (!LogUndo()) return false;
    FinishReplay();
    ValidateDurations();
    EXPECT_EQ(StoreText(), before);
    return StoreText() == before;
}
