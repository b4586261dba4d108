// The helpers for dialogs' controls, and the one-line question, in the tests' own process.

#include "shell/dialog_items_win.h"
#include "shell/text_dialog.h"
#include "window/editor.h"
#include <gtest/gtest.h>
#include <thread>

// The program's windows as the question sees them: its resources, and no main window.
HINSTANCE Instance = nullptr;
HWND FrameWindow = nullptr;

namespace {

constexpr int FIELD = 1, SINGLE = 2, MULTIPLE = 3, CHECK = 4, COMBO = 5, NOT_THERE = 99;

class DialogItems : public testing::Test {
protected:
    void SetUp() override {
        dialog = CreateWindowA("Static", "dialog", WS_POPUP | WS_VISIBLE, 0, 0, 300, 300, nullptr, nullptr,
                               nullptr, nullptr);
        ASSERT_NE(dialog, nullptr);
        add("Edit", FIELD, ES_AUTOHSCROLL);
        add("ListBox", SINGLE, LBS_NOTIFY);
        add("ListBox", MULTIPLE, LBS_NOTIFY | LBS_MULTIPLESEL);
        add("Button", CHECK, BS_AUTOCHECKBOX);
        add("ComboBox", COMBO, CBS_DROPDOWNLIST);
    }
    void TearDown() override { DestroyWindow(dialog); }
    void add(const char *kind, int id, DWORD style) const {
        CreateWindowA(kind, "", WS_CHILD | WS_VISIBLE | style, 10, 40 * id, 200, 38, dialog,
                      reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), nullptr, nullptr);
    }
    void fill(int list) const {
        ListClear(dialog, list);
        for (const char *text : {"zero", "one", "two", "three"}) EXPECT_TRUE(ListAdd(dialog, list, text));
        ListRedraw(dialog, list);
    }
    std::string text(int id) const {
        char buffer[64];
        GetItemText(dialog, id, buffer, sizeof buffer);
        return buffer;
    }
    HWND dialog = nullptr;
};

} // namespace

TEST_F(DialogItems, NothingHappensWithoutADialogOrAControl) {
    for (HWND window : {static_cast<HWND>(nullptr), dialog}) {
        char buffer[8] = "x";
        SetWindowTextSafe(nullptr, "text");
        SetItemText(window, NOT_THERE, "text");
        SetItemTextIfChanged(window, NOT_THERE, "text");
        SetItemNumberIfChanged(window, NOT_THERE, 1, false);
        EXPECT_EQ(GetItemText(window, NOT_THERE, buffer, sizeof buffer), 0);
        EXPECT_STREQ(buffer, "");
        SelectItemText(window, NOT_THERE);
        LimitItemText(window, NOT_THERE, 3);
        EnableItem(window, NOT_THERE, false);
        ShowItem(window, NOT_THERE, false);
        CheckItem(window, NOT_THERE, BST_CHECKED);
        UncheckItem(window, NOT_THERE);
        EXPECT_FALSE(IsItemChecked(window, NOT_THERE));
        CheckRadioItem(window, NOT_THERE, NOT_THERE, NOT_THERE);
        ListClear(window, NOT_THERE);
        EXPECT_FALSE(ListAdd(window, NOT_THERE, "text"));
        ListRedraw(window, NOT_THERE);
        ListDelete(window, NOT_THERE, 0);
        ListReplace(window, NOT_THERE, 0, "text");
        EXPECT_EQ(ListGetText(window, NOT_THERE, 0, buffer, sizeof buffer), 0);
        EXPECT_EQ(ListNextSelected(window, NOT_THERE, 0), -1);
        EXPECT_EQ(ListFirstSelected(window, NOT_THERE), -1);
        ListSetSelected(window, NOT_THERE, 0);
        ComboAdd(window, NOT_THERE, "text");
        EXPECT_EQ(ComboGetSelection(window, NOT_THERE), -1);
        ComboSetSelection(window, NOT_THERE, 0);
    }
}

TEST_F(DialogItems, ATextThatStandsThereIsNotSetAgain) {
    SetItemText(dialog, FIELD, "steady");
    SendMessageA(GetDlgItem(dialog, FIELD), EM_SETSEL, 3, 3);
    SetItemTextIfChanged(dialog, FIELD, "steady");
    // Setting a text would take the caret to its start.
    EXPECT_EQ(LOWORD(SendMessageA(GetDlgItem(dialog, FIELD), EM_GETSEL, 0, 0)), 3);
    SetItemTextIfChanged(dialog, FIELD, "other");
    EXPECT_EQ(text(FIELD), "other");
}

TEST_F(DialogItems, ANumberThatStandsThereIsNotSetAgain) {
    SetItemText(dialog, FIELD, " 12");
    SetItemNumberIfChanged(dialog, FIELD, 12, false);
    EXPECT_EQ(text(FIELD), " 12");
    SetItemNumberIfChanged(dialog, FIELD, static_cast<UINT>(-5), true);
    EXPECT_EQ(text(FIELD), "-5");
    SetItemText(dialog, FIELD, "");
    SetItemNumberIfChanged(dialog, FIELD, 0, false);
    EXPECT_EQ(text(FIELD), "0");
}

TEST_F(DialogItems, SelectingATextSelectsAllOfIt) {
    SetItemText(dialog, FIELD, "steady");
    SelectItemText(dialog, FIELD);
    EXPECT_EQ(HIWORD(SendMessageA(GetDlgItem(dialog, FIELD), EM_GETSEL, 0, 0)), 6);
}

TEST_F(DialogItems, AControlThatIsDisabledHandsTheFocusToItsParent) {
    SetForegroundWindow(dialog);
    SetFocus(GetDlgItem(dialog, FIELD));
    ASSERT_EQ(GetFocus(), GetDlgItem(dialog, FIELD));
    EnableItem(dialog, FIELD, false);
    EXPECT_EQ(GetFocus(), dialog);
    EXPECT_FALSE(IsWindowEnabled(GetDlgItem(dialog, FIELD)));
    EnableItem(dialog, FIELD, true);
    EXPECT_TRUE(IsWindowEnabled(GetDlgItem(dialog, FIELD)));
}

TEST_F(DialogItems, ChecksAndShowsControls) {
    CheckItem(dialog, CHECK, BST_CHECKED);
    EXPECT_TRUE(IsItemChecked(dialog, CHECK));
    UncheckItem(dialog, CHECK);
    EXPECT_FALSE(IsItemChecked(dialog, CHECK));
    ShowItem(dialog, CHECK, false);
    EXPECT_FALSE(IsWindowVisible(GetDlgItem(dialog, CHECK)));
    ShowItem(dialog, CHECK, true);
    EXPECT_TRUE(IsWindowVisible(GetDlgItem(dialog, CHECK)));
}

TEST_F(DialogItems, ASingleSelectionListGivesItsRowWhateverItIsAsked) {
    fill(SINGLE);
    EXPECT_EQ(ListNextSelected(dialog, SINGLE, 0), -1);
    ListSetSelected(dialog, SINGLE, 1);
    EXPECT_EQ(ListFirstSelected(dialog, SINGLE), 1);
    EXPECT_EQ(ListNextSelected(dialog, SINGLE, 3), 1);
    ListSetSelected(dialog, SINGLE, -1);
    EXPECT_EQ(ListFirstSelected(dialog, SINGLE), -1);
}

TEST_F(DialogItems, AMultipleSelectionListIsWalkedRowByRow) {
    fill(MULTIPLE);
    EXPECT_EQ(ListFirstSelected(dialog, MULTIPLE), -1);
    ListSetSelected(dialog, MULTIPLE, 1);
    ListSetSelected(dialog, MULTIPLE, 3);
    EXPECT_EQ(ListFirstSelected(dialog, MULTIPLE), 1);
    EXPECT_EQ(ListNextSelected(dialog, MULTIPLE, 2), 3);
    EXPECT_EQ(ListNextSelected(dialog, MULTIPLE, 4), -1);
    ListSetSelected(dialog, MULTIPLE, -1);
    EXPECT_EQ(ListFirstSelected(dialog, MULTIPLE), -1);
}

TEST_F(DialogItems, AReplacedRowKeepsItsSelection) {
    for (int list : {SINGLE, MULTIPLE}) {
        fill(list);
        ListSetSelected(dialog, list, 2);
        ListReplace(dialog, list, 2, "zwei");
        ListReplace(dialog, list, 1, "eins");
        EXPECT_EQ(ListNextSelected(dialog, list, 0), 2);
        char buffer[16];
        EXPECT_EQ(ListGetText(dialog, list, 2, buffer, sizeof buffer), 4);
        EXPECT_STREQ(buffer, "zwei");
        ListDelete(dialog, list, 0);
        ListGetText(dialog, list, 0, buffer, sizeof buffer);
        EXPECT_STREQ(buffer, "eins");
    }
}

TEST_F(DialogItems, ALongRowIsCutToTheBuffer) {
    ListClear(dialog, SINGLE);
    ListAdd(dialog, SINGLE, std::string(300, 'x').c_str());
    char buffer[16];
    EXPECT_EQ(ListGetText(dialog, SINGLE, 0, buffer, sizeof buffer), 15);
    EXPECT_EQ(std::string(buffer), std::string(15, 'x'));
    EXPECT_EQ(ListGetText(dialog, SINGLE, 1, buffer, sizeof buffer), 0);
}

TEST_F(DialogItems, AComboBoxGivesWhatIsChosen) {
    ComboAdd(dialog, COMBO, "a");
    ComboAdd(dialog, COMBO, "b");
    EXPECT_EQ(ComboGetSelection(dialog, COMBO), -1);
    ComboSetSelection(dialog, COMBO, 1);
    EXPECT_EQ(ComboGetSelection(dialog, COMBO), 1);
}

// --- the one-line question ------------------------------------------------------------------------------

namespace {

class TextQuestion : public testing::Test {
protected:
    void SetUp() override {
        Instance = LoadLibraryExA(ProgramPath.c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE);
    }
    void TearDown() override { FreeLibrary(Instance); }
    // Asks, while `answer` deals with the dialog from another thread.
    int ask(const std::function<void(const Dialog &)> &answer) {
        std::thread hand([&] {
            Dialog dialog;
            WaitFor([&] {
                dialog.window = FindWindowA("#32770", "Kelvane");
                return dialog.window && IsWindowVisible(dialog.window);
            });
            SetForegroundWindow(dialog.window);
            answer(dialog);
        });
        int result = GetTextDialog("Jump To Time:", buffer, sizeof buffer);
        hand.join();
        return result;
    }
    char buffer[9] = "10 ps";
};

} // namespace

TEST_F(TextQuestion, ShowsItsLabelAndTheStartText) {
    ask([](const Dialog &dialog) {
        EXPECT_EQ(dialog.text(100), "Jump To Time:");
        EXPECT_EQ(dialog.text(101), "10 ps");
        EXPECT_EQ(dialog.text(IDOK), "OK");
        EXPECT_EQ(dialog.text(IDCANCEL), "Cancel");
        PostMessageA(dialog.window, WM_COMMAND, IDCANCEL, 0);
    });
}

TEST_F(TextQuestion, OkTakesTheTextOver) {
    int result = ask([](const Dialog &dialog) {
        SetDlgItemTextA(dialog.window, 101, "25 ps");
        PostMessageA(dialog.window, WM_COMMAND, IDOK, 0);
    });
    EXPECT_EQ(result, 1);
    EXPECT_STREQ(buffer, "25 ps");
}

TEST_F(TextQuestion, CancelKeepsTheOldText) {
    int result = ask([](const Dialog &dialog) {
        SetDlgItemTextA(dialog.window, 101, "25 ps");
        PostMessageA(dialog.window, WM_COMMAND, IDCANCEL, 0);
    });
    EXPECT_EQ(result, 0);
    EXPECT_STREQ(buffer, "10 ps");
}

TEST_F(TextQuestion, NoMoreCanBeTypedThanTheBufferHolds) {
    ask([](const Dialog &dialog) {
        EXPECT_EQ(SendDlgItemMessageA(dialog.window, 101, EM_GETLIMITTEXT, 0, 0), 8);
        SetDlgItemTextA(dialog.window, 101, "0123456789");
        PostMessageA(dialog.window, WM_COMMAND, IDOK, 0);
    });
    EXPECT_STREQ(buffer, "01234567");
}

TEST_F(TextQuestion, StandsWhereItStoodLast) {
    ask([](const Dialog &dialog) {
        SetWindowPos(dialog.window, nullptr, 222, 111, 0, 0, SWP_NOSIZE | SWP_NOZORDER);
        PostMessageA(dialog.window, WM_COMMAND, IDCANCEL, 0);
    });
    ask([](const Dialog &dialog) {
        EXPECT_EQ(PlaceOf(dialog.window).left, 222);
        EXPECT_EQ(PlaceOf(dialog.window).top, 111);
        PostMessageA(dialog.window, WM_COMMAND, IDCANCEL, 0);
    });
}
