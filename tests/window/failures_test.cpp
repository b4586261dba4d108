// What the program says when Windows refuses it something, and that it goes on.

#include "shell/command_ids.h"
#include "window/editor.h"
#include "window/expected.h"
#include <gtest/gtest.h>

namespace {

using Labels = std::vector<std::string>;

class Failures : public testing::Test {
protected:
    void SetUp() override {
        directory.write("a.wdl", "%ENDTIME=40;\nA { In Default None 0 1 50 }=0 10 1 10;\n");
        directory.write("a.kel", "Wave A\n");
    }
    // Answers the message box, which must say this.
    static void ExpectBox(const Editor &editor, const std::string &text,
                          const std::string &title = "Kelvane Program Error", HWND before = nullptr) {
        Dialog box = editor.dialog(before);
        ASSERT_NE(box.window, nullptr) << "nothing is said, where it should be: " << text;
        EXPECT_EQ(box.title(), title);
        EXPECT_EQ(box.labels(), (Labels{"OK", text}));
        PressKey(VK_RETURN);
        EXPECT_TRUE(WaitFor([&] { return !IsWindow(box.window); }));
    }
    // Waits for the message box and leaves it open.
    static Dialog OpenBox(const Editor &editor) {
        Dialog box = editor.dialog();
        EXPECT_NE(box.window, nullptr);
        return box;
    }
    // A start that is held up by a message before there is a window.
    std::unique_ptr<Editor> startHeldUp() const {
        auto editor = std::make_unique<Editor>(directory, std::string(300, 'x') + " a.wdl");
        EXPECT_NE(OpenBox(*editor).window, nullptr);
        return editor;
    }
    // True if one of the open message boxes says this. A failing call can bring up several of them.
    static bool IsTold(const Editor &editor, const std::string &text) {
        for (const Dialog &box : editor.dialogs())
            if (box.title() == "Kelvane Program Error" && box.labels() == Labels{"OK", text}) return true;
        return false;
    }
    static std::string Told(const Editor &editor) {
        std::string texts;
        for (const Dialog &box : editor.dialogs())
            for (const std::string &label : box.labels()) texts += "\n" + label;
        return texts;
    }
    static void AnswerAll(const Editor &editor) {
        EXPECT_TRUE(WaitFor([&] {
            for (const Dialog &box : editor.dialogs()) PostMessageA(box.window, WM_COMMAND, IDOK, 0);
            return editor.dialogs().empty();
        }));
    }
    // The call fails during the action, which must be told of in these words; the program goes on.
    void expectToldOf(const std::string &call, const std::function<void(const Editor &)> &action,
                      const std::string &text) const {
        Editor editor(directory, "a.wdl");
        ASSERT_TRUE(editor.open());
        {
            FailingCall failing(editor, call);
            action(editor);
            EXPECT_TRUE(WaitFor([&] { return IsTold(editor, text); })) << text << Told(editor);
        }
        AnswerAll(editor);
        editor.close();
        EXPECT_EQ(editor.ended(), 0u);
    }

    TestDirectory directory;
};

POINT InWaves(const Editor &editor) {
    RECT waves = PlaceOf(editor.pane(3));
    return {(waves.left + waves.right) / 2, waves.top + ExpectedSizes().rowHeight / 2};
}

} // namespace

TEST_F(Failures, MissingKeysAreToldOfAndTheStartGoesOn) {
    auto editor = startHeldUp();
    {
        FailingCall failing(*editor, "LoadAcceleratorsA");
        ExpectBox(*editor, "File name is too long", "Kelvane Error");
        ExpectBox(*editor, "LoadAccelerators Failed in InitWavesInst");
        ExpectBox(*editor, "LoadAccelerators Special Failed in InitWavesInst");
    }
    EXPECT_TRUE(editor->open());
}

TEST_F(Failures, AScreenThatCannotBeMeasuredIsToldOfOnceAndTheStartGoesOn) {
    for (const char *call : {"GetDC", "ReleaseDC"}) {
        auto editor = startHeldUp();
        {
            FailingCall failing(*editor, call);
            ExpectBox(*editor, "File name is too long", "Kelvane Error");
            OpenBox(*editor);
        }
        ExpectBox(*editor, std::string(call) + " Failure in CREATE");
        EXPECT_TRUE(editor->open()) << call;
    }
}

TEST_F(Failures, PanelsThatCannotBeMadeAreToldOf) {
    // One wave more than there are rows holds the start up before the panels are made.
    std::string stimulus = "%ENDTIME=40;\n", list;
    for (int i = 0; i <= 256; ++i) {
        std::string name = "N";
        name += std::to_string(i);
        stimulus += name + " { In Default None 0 1 50 }=0 10 1 10;\n";
        list += "Wave " + name + "\n";
    }
    directory.write("many.wdl", stimulus);
    directory.write("many.kel", list);
    Editor editor(directory, "many.wdl");
    OpenBox(editor);
    {
        FailingCall failing(editor, "CreateWindowExA");
        ExpectBox(editor, "Too many waveforms displayed", "Kelvane Error");
        ExpectBox(editor, "CreateWindow Failure in OpenWindow");
    }
    // Without panels there is nothing to see, and nothing breaks.
    for (int id : {COMMAND_REDRAW, COMMAND_ZOOM_FIT, COMMAND_ZOOM_IN, COMMAND_TO_END, COMMAND_ROW_DOWN,
                   COMMAND_PLACE_MARK, COMMAND_EDIT_MODE})
        editor.command(id);
    SetWindowPos(editor.frame(), nullptr, 0, 0, 500, 300, SWP_NOZORDER | SWP_NOMOVE);
    EXPECT_EQ(editor.pane(1), nullptr);
    EXPECT_EQ(TextOf(editor.frame()), "Kelvane - many");
    editor.close();
    EXPECT_EQ(editor.ended(), 0u);
}

TEST_F(Failures, APanelMessageThatKeepsItsContextIsToldOf) {
    expectToldOf(
        "ReleaseDC",
        [](const Editor &editor) {
            POINT place = InWaves(editor);
            MoveMouse(place.x, place.y);
        },
        "ReleaseDC Failure in MainWndProc");
}

TEST_F(Failures, AChangeOfPanelsThatKeepsAContextIsToldOf) {
    expectToldOf(
        "ReleaseDC", [](const Editor &editor) { editor.command(COMMAND_REDRAW); },
        "ReleaseDC Failure in SelectPicture");
}

TEST_F(Failures, AMainWindowMessageThatKeepsAContextIsToldOf) {
    expectToldOf(
        "ReleaseDC", [](const Editor &editor) { editor.command(COMMAND_PLACE_MARK); },
        "ReleaseDC Failure in BackWndProc");
}

TEST_F(Failures, APaintThatKeepsAContextIsToldOf) {
    expectToldOf(
        "ReleaseDC", [](const Editor &editor) { InvalidateRect(editor.pane(3), nullptr, FALSE); },
        "ReleaseDC Failure in WM_PAINT");
}

TEST_F(Failures, ARubberLineThatKeepsItsContextIsToldOf) {
    expectToldOf(
        "ReleaseDC",
        [](const Editor &editor) {
            PostMessageA(editor.frame(), WM_LBUTTONDOWN, MK_LBUTTON,
                         MAKELPARAM(ExpectedSizes().nameColumnWidth + 1, 200));
        },
        "ReleaseDC Failure in DrawVerticalBar()");
}

TEST_F(Failures, APanelThatGoesAndKeepsItsContextIsToldOf) {
    expectToldOf(
        "ReleaseDC", [](const Editor &editor) { PostMessageA(editor.pane(1), WM_DESTROY, 0, 0); },
        "ReleaseDC Failure in WM_DESTROY");
}

TEST_F(Failures, AListingThatCannotBeMadeIsToldOf) {
    expectToldOf(
        "CreateDialogParamA", [](const Editor &editor) { editor.command(COMMAND_SHOW_WAVEFORM_DATA); },
        "CreateDialog Failure in OpenDataListing");
}
