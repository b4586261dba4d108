// What the program says of files that it cannot take, and how it ends then.

#include "shell/command_ids.h"
#include "window/editor.h"
#include <algorithm>
#include <gtest/gtest.h>

namespace {

constexpr const char *GOOD = "%ENDTIME=40;\nA { In Default None 0 1 50 }=0 10 1 10;\n";
constexpr const char *BAD = "%ENDTIME=40;\nA = 1 5 + 0 5;\n";
constexpr int FIRST_BUTTON = 3;
constexpr int ALERT_ICON = 6;

class Messages : public testing::Test {
protected:
    void SetUp() override {
        directory.write("good.wdl", GOOD);
        directory.write("bad.wdl", BAD);
    }
    // The system's own text editor shows the listing, in a process that ends with the test.
    static bool listingIsShown() {
        return WaitFor([&] {
            HWND notepad = FindWindowA("Notepad", nullptr);
            return notepad && TextOf(notepad).find("bad.err") != std::string::npos;
        });
    }
    // The message box about the bad file, which ends the program when it is answered.
    void expectCompilationErrors(Editor &editor) const {
        Dialog box = editor.dialog();
        ASSERT_NE(box.window, nullptr);
        EXPECT_EQ(box.title(), "Kelvane Error");
        EXPECT_EQ(box.labels(), (std::vector<std::string>{"OK", "Compilation errors in file bad.wdl"}));
        // The listing comes in front of the box.
        EXPECT_TRUE(listingIsShown());
        SetForegroundWindow(box.window);
        EXPECT_TRUE(WaitFor([&] { return GetForegroundWindow() == box.window; }));
        editor.shoot("message-compilation-errors", box.window);
        PressKey(VK_RETURN);
    }

    TestDirectory directory;
};

} // namespace

TEST_F(Messages, AFileWithASyntaxErrorShowsItsListingAndEndsTheProgram) {
    Editor editor(directory, "bad.wdl");
    expectCompilationErrors(editor);
    EXPECT_EQ(editor.ended(), 0u);
    EXPECT_NE(directory.read("bad.err").find("Invalid composite bus formation"), std::string::npos);
    EXPECT_EQ(directory.read("bad.wdl"), BAD);
}

TEST_F(Messages, AGoodFileLeavesNoListing) {
    Editor editor(directory, "good.wdl");
    ASSERT_TRUE(editor.open());
    EXPECT_FALSE(directory.has("good.err"));
}

TEST_F(Messages, ABadFileThroughOpenEndsTheProgramToo) {
    Editor editor(directory, "good.wdl");
    ASSERT_TRUE(editor.open());
    editor.command(COMMAND_OPEN);
    Dialog open = editor.dialog();
    ASSERT_NE(open.window, nullptr);
    open.giveFile(directory.file("bad.wdl"));
    ASSERT_TRUE(WaitFor([&] { return !IsWindow(open.window); }));
    expectCompilationErrors(editor);
    EXPECT_EQ(editor.ended(), 0u);
    EXPECT_EQ(directory.read("good.wdl"), GOOD);
}

TEST_F(Messages, AReadOnlyFileIsToldOfAndEndsTheProgram) {
    SetFileAttributesA(directory.file("good.wdl").c_str(), FILE_ATTRIBUTE_READONLY);
    Editor editor(directory, "good.wdl");
    Dialog alert = editor.dialog();
    ASSERT_NE(alert.window, nullptr);
    EXPECT_EQ(alert.title(), "Kelvane");
    EXPECT_EQ(alert.labels(), (std::vector<std::string>{"File good.wdl is Read Only",
                                                        "Change permissions and restart the program", "OK"}));
    EXPECT_TRUE(alert.has(ALERT_ICON));
    editor.shoot("alert-read-only-at-start", alert.window);
    alert.click(FIRST_BUTTON);
    EXPECT_EQ(editor.ended(), 0u);
}

TEST_F(Messages, AnAlertIsMeasuredByItsTextsAndHasNothingElse) {
    SetFileAttributesA(directory.file("good.wdl").c_str(), FILE_ATTRIBUTE_READONLY);
    Editor editor(directory, "good.wdl");
    Dialog alert = editor.dialog();
    ASSERT_NE(alert.window, nullptr);
    for (int id : {2, 4, 5}) EXPECT_FALSE(alert.has(id)) << id;
    auto place = [&](int id) { return PlaceIn(alert.window, GetDlgItem(alert.window, id)); };
    auto height = [](const RECT &r) { return static_cast<int>(r.bottom - r.top); };
    auto width = [](const RECT &r) { return static_cast<int>(r.right - r.left); };
    int bx = LOWORD(GetDialogBaseUnits()), by = HIWORD(GetDialogBaseUnits());
    RECT first = place(0), second = place(1), icon = place(ALERT_ICON), button = place(FIRST_BUTTON), client;
    GetClientRect(alert.window, &client);
    int text = 2 * height(first) + 2 * by / 8, tall = std::max(text, height(icon));
    int textPad = tall - text, wide = width(second) + 8 * bx / 4 + width(icon);
    EXPECT_EQ(icon.left, 6 * bx / 4);
    EXPECT_EQ(icon.top, 6 * by / 8 + (tall - height(icon)) / 2);
    EXPECT_EQ(first.left, icon.right + 8 * bx / 4);
    EXPECT_EQ(first.top, 6 * by / 8 + textPad / 2);
    EXPECT_EQ(second.left, first.left);
    EXPECT_EQ(second.top, first.bottom + 2 * by / 8);
    EXPECT_EQ(client.right, wide + 12 * bx / 4);
    EXPECT_EQ(client.bottom, tall + 18 * by / 8 + height(button));
    EXPECT_EQ(button.left, 6 * bx / 4 + (wide - width(button)) / 2);
    EXPECT_EQ(button.top, second.bottom + 6 * by / 8 + (textPad + 1) / 2);
    PressKey(VK_RETURN);
    EXPECT_EQ(editor.ended(), 0u);
}

TEST_F(Messages, ADirectoryIsNoDocument) {
    CreateDirectoryA(directory.file("folder.wdl").c_str(), nullptr);
    Editor editor(directory, "folder.wdl");
    Dialog box = editor.dialog();
    ASSERT_NE(box.window, nullptr);
    EXPECT_EQ(box.labels(), (std::vector<std::string>{"OK", "Unable to open file folder.wdl"}));
    PressKey(VK_RETURN);
    EXPECT_EQ(editor.ended(), 0u);
}

TEST_F(Messages, ANameThatIsTooLongIsToldOfAndLeftOut) {
    Editor editor(directory, std::string(300, 'x') + ".wdl");
    Dialog box = editor.dialog();
    ASSERT_NE(box.window, nullptr);
    EXPECT_EQ(box.labels(), (std::vector<std::string>{"OK", "File name is too long"}));
    PressKey(VK_RETURN);
    ASSERT_TRUE(editor.dialogGone());
    ASSERT_TRUE(editor.open());
    EXPECT_EQ(editor.title(), "Kelvane - <untitled>");
}

TEST_F(Messages, AlertsStandWhereTheLastOneWasAndFitTheirTexts) {
    Editor editor(directory, "good.wdl");
    ASSERT_TRUE(editor.open());
    ASSERT_TRUE(editor.plantChange());
    editor.close();
    Dialog first = editor.dialog();
    ASSERT_NE(first.window, nullptr);
    RECT client = {};
    GetClientRect(first.window, &client);
    int right = 0;
    for (int id = 0; id <= 6; ++id) {
        RECT place = PlaceIn(first.window, GetDlgItem(first.window, id));
        EXPECT_GE(place.left, 0) << id;
        EXPECT_GE(place.top, 0) << id;
        EXPECT_LE(place.right, client.right) << id;
        EXPECT_LE(place.bottom, client.bottom) << id;
        // The buttons stand in a row and do not touch.
        bool followsButton = id > FIRST_BUTTON && id < ALERT_ICON;
        EXPECT_TRUE(!followsButton || place.left > right) << id;
        right = place.right;
    }
    SetWindowPos(first.window, nullptr, 300, 240, 0, 0, SWP_NOSIZE | SWP_NOZORDER);
    first.click(FIRST_BUTTON + 2);
    ASSERT_TRUE(editor.dialogGone());
    editor.close();
    Dialog second = editor.dialog();
    ASSERT_NE(second.window, nullptr);
    EXPECT_EQ(PlaceOf(second.window).left, 300);
    EXPECT_EQ(PlaceOf(second.window).top, 240);
}

TEST_F(Messages, TheAboutBoxNamesTheProgram) {
    Editor editor(directory, "good.wdl");
    ASSERT_TRUE(editor.open());
    editor.command(COMMAND_ABOUT);
    Dialog about = editor.dialog();
    ASSERT_NE(about.window, nullptr);
    EXPECT_EQ(about.title(), "About Kelvane");
    EXPECT_EQ(about.text(100), "Kelvane");
    EXPECT_EQ(about.text(101).substr(0, 8), "Version ");
    editor.shoot("about", about.window);
    about.click(IDOK);
    EXPECT_TRUE(editor.dialogGone());
    EXPECT_TRUE(editor.running());
}
