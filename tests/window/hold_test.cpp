// Two programs and one document.

#include "shell/command_ids.h"
#include "window/editor.h"
#include <gtest/gtest.h>
#include <memory>

namespace {

constexpr const char *ONE = "%ENDTIME = 40;\nA { In Default None 0 1 50 } = 0 10 1 10;\n";
constexpr const char *TWO = "%ENDTIME = 40;\nB { In Default None 0 1 50 } = 1 10 0 10;\n";

// A symbolic link, by the host's own program where Windows is run by another system; false if there can be
// none.
bool MakeLink(const std::string &link, const std::string &target) {
    CreateSymbolicLinkA(link.c_str(), target.c_str(), 0);
    if (GetFileAttributesA(link.c_str()) != INVALID_FILE_ATTRIBUTES) return true;
    using UnixName = char *(CDECL *)(const wchar_t *);
    auto name = reinterpret_cast<UnixName>(
        reinterpret_cast<void *>(GetProcAddress(GetModuleHandleA("kernel32"), "wine_get_unix_file_name")));
    if (!name) return false;
    std::string line = "\\bin\\ln -s \"" + std::string(name(Wide(target).c_str())) + "\" \"" +
                       name(Wide(link).c_str()) + "\"";
    STARTUPINFOA start = {};
    start.cb = sizeof start;
    PROCESS_INFORMATION started = {};
    if (!CreateProcessA("Z:\\bin\\ln", line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &start,
                        &started))
        return false;
    WaitFor([&] { return GetFileAttributesA(link.c_str()) != INVALID_FILE_ATTRIBUTES; }, 10);
    CloseHandle(started.hThread);
    CloseHandle(started.hProcess);
    return GetFileAttributesA(link.c_str()) != INVALID_FILE_ATTRIBUTES;
}

class Hold : public testing::Test {
protected:
    void SetUp() override {
        directory.write("one document.wdl", ONE);
        directory.write("one document.kel", "Wave A\n");
        directory.write("two.wdl", TWO);
        directory.write("two.kel", "Wave B\n");
        first = std::make_unique<Editor>(directory, "\"one document.wdl\"");
        ASSERT_TRUE(first->open());
        // Enough for the log's first block.
        ASSERT_TRUE(first->plantSelectedRow(0));
        for (int i = 0; i < 70; i++) first->command(COMMAND_DUPLICATE);
        ASSERT_TRUE(WaitFor([&] { return directory.read(LOG).size() > 1000; }));
        ASSERT_TRUE(first->painted());
        log = directory.read(LOG);
    }
    // The program tells that another one has the file, and shows that one.
    void expectTold(const Editor &editor, const std::string &name) const {
        Dialog box = editor.dialog();
        ASSERT_NE(box.window, nullptr);
        EXPECT_EQ(box.labels().back(), name + " is already open in another window");
        editor.shoot("held", box.window);
        PressKey(VK_RETURN);
        EXPECT_TRUE(WaitFor([&] { return GetForegroundWindow() == first->frame(); }, 10));
        EXPECT_EQ(directory.read(LOG), log);
    }
    void expectRefused(const std::string &spelling, const std::string &name) const {
        SCOPED_TRACE(spelling);
        Editor second(directory, "\"" + spelling + "\"");
        expectTold(second, name);
        EXPECT_EQ(second.ended(), 0u);
    }
    static constexpr const char *LOG = "one document._KL";
    TestDirectory directory;
    std::unique_ptr<Editor> first;
    std::string log;
};

} // namespace

TEST_F(Hold, AStartOnADocumentThatIsOpenEndsWhateverThePathsSpelling) {
    expectRefused("one document.wdl", "one document.wdl");
    expectRefused("ONE Document", "ONE Document.wdl");
    expectRefused("config\\..\\one document.kel", "one document.wdl");
    char brief[MAX_PATH] = "";
    ASSERT_GT(GetShortPathNameA(directory.file("one document.wdl").c_str(), brief, sizeof brief), 0u);
    std::string name = strrchr(brief, '\\') + 1;
    expectRefused(brief, name.substr(0, name.rfind('.')) + ".wdl");
    EXPECT_TRUE(first->painted());
}

TEST_F(Hold, AHardLinkIsTheSameDocument) {
    ASSERT_TRUE(CreateHardLinkA(directory.file("hard.wdl").c_str(),
                                directory.file("one document.wdl").c_str(), nullptr));
    expectRefused("hard.wdl", "hard.wdl");
    // Also when a save has put another file in its place.
    first->command(COMMAND_SAVE);
    ASSERT_TRUE(first->hasStrip("File successfully saved"));
    DeleteFileA(directory.file("hard.wdl").c_str());
    ASSERT_TRUE(CreateHardLinkA(directory.file("hard.wdl").c_str(),
                                directory.file("one document.wdl").c_str(), nullptr));
    log = directory.read(LOG);
    expectRefused("hard.wdl", "hard.wdl");
}

TEST_F(Hold, ASymbolicLinkIsTheSameDocument) {
    // The directory's other end does not know how to remove it.
    struct Link {
        ~Link() { DeleteFileA(path.c_str()); }
        std::string path;
    } link{directory.file("link.wdl")};
    if (!MakeLink(link.path, directory.file("one document.wdl"))) GTEST_SKIP() << "no link can be made here";
    expectRefused("link.wdl", "link.wdl");
}

TEST_F(Hold, ANameWithoutAFileIsHeldToo) {
    Editor second(directory, "new.wdl");
    ASSERT_TRUE(second.open());
    Editor third(directory, "config\\..\\NEW.wdl");
    Dialog box = third.dialog();
    ASSERT_NE(box.window, nullptr);
    EXPECT_EQ(box.labels().back(), "NEW.wdl is already open in another window");
    PressKey(VK_RETURN);
    EXPECT_EQ(third.ended(), 0u);
    EXPECT_TRUE(WaitFor([&] { return GetForegroundWindow() == second.frame(); }, 10));
}

TEST_F(Hold, OpenKeepsTheDocumentAndTheOtherWindowComesToTheFront) {
    Editor second(directory, "two.wdl");
    ASSERT_TRUE(second.open());
    second.command(COMMAND_OPEN);
    Dialog dialog = second.dialog();
    ASSERT_NE(dialog.window, nullptr);
    dialog.giveFile(directory.file("one document.wdl"));
    ASSERT_TRUE(WaitFor([&] { return !IsWindow(dialog.window); }));
    expectTold(second, "one document.wdl");
    EXPECT_EQ(second.title(), "Kelvane - two");
    EXPECT_TRUE(second.painted());
    // And the other way round: what it has is still its own.
    Editor third(directory, "two.wdl");
    Dialog box = third.dialog();
    ASSERT_NE(box.window, nullptr);
    PressKey(VK_RETURN);
    EXPECT_EQ(third.ended(), 0u);
}

TEST_F(Hold, SaveAsOntoADocumentThatIsOpenWritesNothing) {
    Editor second(directory, "two.wdl");
    ASSERT_TRUE(second.open());
    second.command(COMMAND_SAVE_AS);
    Dialog dialog = second.dialog();
    ASSERT_NE(dialog.window, nullptr);
    dialog.giveFile(directory.file("one document.wdl"));
    Dialog question = second.dialog(dialog.window);
    ASSERT_NE(question.window, nullptr);
    question.click(IDYES);
    ASSERT_TRUE(WaitFor([&] { return !IsWindow(dialog.window); }));
    expectTold(second, "one document.wdl");
    EXPECT_EQ(directory.read("one document.wdl"), ONE);
    EXPECT_EQ(second.title(), "Kelvane - two");
}

TEST_F(Hold, AMinimizedWindowComesBack) {
    ShowWindow(first->frame(), SW_MINIMIZE);
    ASSERT_TRUE(WaitFor([&] { return IsIconic(first->frame()) != FALSE; }, 10));
    expectRefused("one document.wdl", "one document.wdl");
    EXPECT_TRUE(WaitFor([&] { return !IsIconic(first->frame()); }, 10));
}

TEST_F(Hold, AProgramThatWasKilledHoldsNothing) {
    for (int i = 0; i < 5; i++) {
        first.reset();
        DeleteFileA(directory.file(LOG).c_str());
        first = std::make_unique<Editor>(directory, "\"one document.wdl\"");
        ASSERT_TRUE(first->open()) << i;
    }
}

TEST_F(Hold, IsGoneWithTheProcessAndWithTheDocument) {
    first->command(COMMAND_OPEN);
    Dialog question = first->dialog();
    ASSERT_NE(question.window, nullptr);
    question.click(4); // the changes are not saved
    Dialog dialog = first->dialog(question.window);
    ASSERT_NE(dialog.window, nullptr);
    dialog.giveFile(directory.file("two.wdl"));
    ASSERT_TRUE(WaitFor([&] { return first->title() == "Kelvane - TWO"; }));
    Editor second(directory, "\"one document.wdl\"");
    ASSERT_TRUE(second.open());
    first.reset(); // killed
    Editor third(directory, "two.wdl");
    EXPECT_TRUE(third.open());
}
