// What the program carries in its resources: menus, keys, pictures, dialogs; and the menus as they are shown.

#include "shell/command_ids.h"
#include "window/editor.h"
#include <gtest/gtest.h>
#include <map>

namespace {

class Resources : public testing::Test {
protected:
    void SetUp() override {
        module = LoadLibraryExA(ProgramPath.c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE);
        ASSERT_NE(module, nullptr);
    }
    void TearDown() override { FreeLibrary(module); }
    HMODULE module = nullptr;
};

std::string EntryText(HMENU menu, int position) {
    char text[128] = "";
    GetMenuStringA(menu, static_cast<UINT>(position), text, sizeof text, MF_BYPOSITION);
    return text;
}

void CollectEntries(HMENU menu, std::map<int, std::string> &entries) {
    for (int i = 0; i < GetMenuItemCount(menu); ++i) {
        if (HMENU popup = GetSubMenu(menu, i))
            CollectEntries(popup, entries);
        else if (int id = static_cast<int>(GetMenuItemID(menu, i)))
            entries[id] = EntryText(menu, i);
    }
}

std::string KeyText(const ACCEL &key) {
    std::string text;
    if (key.fVirt & FSHIFT) text += "Shift+";
    if (key.fVirt & FCONTROL) text += "Ctrl+";
    if (key.fVirt & FVIRTKEY) return text + "vk" + std::to_string(key.key);
    return text + "^" + static_cast<char>(key.key + '@');
}

std::map<std::string, int> Keys(HMODULE module, const char *table) {
    std::map<std::string, int> keys;
    HACCEL handle = LoadAcceleratorsA(module, table);
    ACCEL entries[64];
    int count = handle ? CopyAcceleratorTableA(handle, entries, 64) : 0;
    for (int i = 0; i < count; ++i) keys[KeyText(entries[i])] = entries[i].cmd;
    return keys;
}

std::string Vk(int key) {
    return "vk" + std::to_string(key);
}

} // namespace

TEST_F(Resources, EveryMenuEntryHasItsText) {
    const std::map<int, std::string> expected = {
        {2, "&Redraw"},
        {30, "Zoom &In\tCtrl+I"},
        {32, "Zoom &Out\tCtrl+O"},
        {34, "&Pan\tCtrl+W"},
        {36, "&Full Fit\tCtrl+F"},
        {38, "Full &Scale\tCtrl+S"},
        {50, "&Undo\tF9"},
        {52, "&Redo\tShift+F9"},
        {62, "Page Set&up..."},
        {64, "&Print..."},
        {70, "C&ustomize..."},
        {76, "Cop&y Externals"},
        {78, "&Consistency Check"},
        {82, "Cu&t\tCtrl+X"},
        {84, "C&opy\tCtrl+C"},
        {86, "&Paste\tCtrl+V"},
        {88, "&Show..."},
        {90, "&Delete\tDel"},
        {92, "&New Wave..."},
        {94, "&Duplicate"},
        {96, "&Hide\tF5"},
        {98, "&Expand Bus"},
        {100, "&Node Parameters..."},
        {102, "&Show Waveform Data"},
        {104, "&Place Mark"},
        {106, "&Hide Mark"},
        {108, "&Timing Options..."},
        {110, "&Display Options..."},
        {112, "Next &Change\t+"},
        {114, "To &Marker\t-"},
        {116, "To &Time..."},
        {118, "Time=&0\tHome"},
        {120, "Time=&End\tEnd"},
        {122, "Tick &Left"},
        {124, "Tick &Right"},
        {126, "10 Left\tShift+Left"},
        {128, "10 Right\tShift+Right"},
        {138, "&Insert Pattern..."},
        {140, "&Remove..."},
        {142, "&Colors..."},
        {144, "&Keys To Waves"},
        {150, "&New"},
        {152, "&Open..."},
        {154, "&Save"},
        {156, "Save &As..."},
        {160, "E&xit"},
        {164, "&Contents"},
        {166, "&Search for Help On..."},
        {168, "&How to Use Help"},
        {172, "&About Kelvane..."},
        {214, "&Query Mode\tF2"},
        {220, "&Edit Mode"},
    };
    HMENU menu = LoadMenuA(module, "Main");
    ASSERT_NE(menu, nullptr);
    std::map<int, std::string> entries;
    CollectEntries(menu, entries);
    EXPECT_EQ(entries, expected);
    DestroyMenu(menu);
}

TEST_F(Resources, NoTwoEntriesOfAMenuShareTheirLetter) {
    HMENU menu = LoadMenuA(module, "Main");
    ASSERT_NE(menu, nullptr);
    for (int i = -1; i < GetMenuItemCount(menu); ++i) {
        HMENU popup = i < 0 ? menu : GetSubMenu(menu, i);
        std::string letters;
        for (int entry = 0; entry < GetMenuItemCount(popup); ++entry) {
            std::string text = EntryText(popup, entry);
            size_t mark = text.find('&');
            if (mark == std::string::npos) continue;
            char letter = static_cast<char>(toupper(text[mark + 1]));
            EXPECT_EQ(letters.find(letter), std::string::npos) << text;
            letters += letter;
        }
    }
    DestroyMenu(menu);
}

TEST_F(Resources, TheKeysThatWorkEverywhere) {
    const std::map<std::string, int> expected = {
        {Vk(VK_F1), 162},   {Vk(VK_F2), 214},
        {Vk(VK_F4), 92},    {Vk(VK_F5), 96},
        {Vk(VK_F9), 50},    {"Shift+" + Vk(VK_F9), 52},
        {"^Z", 50},         {"^Q", 214},
        {"^I", 30},         {"^O", 32},
        {"^S", 38},         {"^W", 34},
        {"^F", 36},         {"^D", 170},
        {Vk(VK_ADD), 112},  {Vk(VK_SUBTRACT), 114},
        {Vk(VK_HOME), 118}, {Vk(VK_END), 120},
    };
    EXPECT_EQ(Keys(module, "Main"), expected);
}

TEST_F(Resources, TheKeysThatADialogKeepsForItself) {
    const std::map<std::string, int> expected = {
        {Vk(VK_RIGHT), 124},
        {Vk(VK_LEFT), 122},
        {"Shift+" + Vk(VK_RIGHT), 128},
        {"Shift+" + Vk(VK_LEFT), 126},
        {Vk(VK_UP), 130},
        {Vk(VK_DOWN), 132},
        {"Shift+" + Vk(VK_DELETE), 82},
        {"Ctrl+" + Vk(VK_INSERT), 84},
        {Vk(VK_DELETE), 90},
        {"Shift+" + Vk(VK_INSERT), 86},
        {"^X", 82},
        {"^C", 84},
        {"^V", 86},
    };
    EXPECT_EQ(Keys(module, "Special"), expected);
}

TEST_F(Resources, ThePicturesAreThere) {
    for (const char *name : {"zoom", "select", "query", "resize"}) {
        HANDLE cursor = LoadImageA(module, name, IMAGE_CURSOR, 0, 0, LR_DEFAULTSIZE);
        EXPECT_NE(cursor, nullptr) << name;
    }
    for (int size : {16, 32, 48, 256})
        EXPECT_NE(LoadImageA(module, "icon", IMAGE_ICON, size, size, 0), nullptr) << size;
}

TEST_F(Resources, TheManifestAndTheVersionAreThere) {
    HRSRC manifest = FindResourceA(module, MAKEINTRESOURCEA(1), MAKEINTRESOURCEA(24));
    ASSERT_NE(manifest, nullptr);
    std::string text(static_cast<const char *>(LockResource(LoadResource(module, manifest))),
                     SizeofResource(module, manifest));
    EXPECT_NE(text.find("dpiAware"), std::string::npos);
    EXPECT_NE(text.find("Microsoft.Windows.Common-Controls"), std::string::npos);
    EXPECT_NE(text.find(">UTF-8</activeCodePage>"), std::string::npos) << "for names of any file";
    EXPECT_NE(FindResourceA(module, MAKEINTRESOURCEA(1), MAKEINTRESOURCEA(16)), nullptr);
}

// --- the menus on the screen ----------------------------------------------------------------------

namespace {

class Menus : public testing::Test {
protected:
    void SetUp() override {
        directory.write("one.wdl", "%ENDTIME = 40;\nA { In Default None 0 1 50 } = 0 10 1 10;\n");
        directory.write("one.kel", "Wave A\n");
        editor = std::make_unique<Editor>(directory, "one.wdl");
        ASSERT_TRUE(editor->open());
    }
    // Opens a menu with its letter; the picture of the popup.
    Picture open(WORD letter) const {
        editor->toFront();
        PressKey(letter, {VK_MENU});
        HWND popup = nullptr;
        if (!WaitFor([&] { return (popup = FindWindowA("#32768", nullptr)) && IsWindowVisible(popup); }))
            return {};
        Picture last, now;
        WaitFor([&] {
            last = now;
            now = PictureOfWindow(popup);
            return now == last;
        });
        return now;
    }
    // The pixels of entries that may be chosen, in a horizontal slice of the popup, in parts of its height.
    static int ready(const Picture &popup, double from, double to) {
        uint32_t text = GetSysColor(COLOR_MENUTEXT);
        uint32_t rgb = GetRValue(text) << 16 | GetGValue(text) << 8 | GetBValue(text);
        return popup.count(rgb, 8, static_cast<int>(popup.height * from), popup.width - 8,
                           static_cast<int>(popup.height * to));
    }

    TestDirectory directory;
    std::unique_ptr<Editor> editor;
};

} // namespace

TEST_F(Menus, EntriesThatAreNotBuiltAreGray) {
    Picture options = open('O');
    editor->shoot("menu-options");
    ASSERT_GT(options.height, 50);
    EXPECT_EQ(ready(options, 0, 0.75), 0);
    EXPECT_GT(ready(options, 0.8, 1), 20) << "Keys To Waves";
    PressKey(VK_ESCAPE);
    PressKey(VK_ESCAPE);
}

TEST_F(Menus, EntriesOfTheHelpMayBeChosen) {
    Picture help = open('H');
    editor->shoot("menu-help");
    ASSERT_GT(help.height, 50);
    EXPECT_GT(ready(help, 0, 0.7), 20);
    EXPECT_GT(ready(help, 0.75, 1), 20);
    PressKey('A');
    EXPECT_EQ(editor->dialog().title(), "About Kelvane");
}

TEST_F(Menus, AGrayKeyDoesNothing) {
    Picture before = editor->picture();
    for (WORD key : {VK_F4, VK_DELETE, VK_SUBTRACT, VK_ADD, VK_F5}) PressKey(key);
    ASSERT_TRUE(editor->painted());
    EXPECT_TRUE(editor->picture() == before);
}

TEST_F(Menus, AnOddCommandIsTheEvenOneBelowIt) {
    editor->command(COMMAND_ABOUT + 1);
    EXPECT_EQ(editor->dialog().title(), "About Kelvane");
}
