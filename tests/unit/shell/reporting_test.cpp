#include "headless/headless.h"
#include "shell/reporting_view.h"
#include <cstdio>
#include <gtest/gtest.h>

namespace {

class Reporting : public testing::Test {
protected:
    Reporting() {
        InitHeadless();
        InitReporting();
    }
    void substitute(const std::string &text) {
        snprintf(PromptSubstitute, sizeof PromptSubstitute, "%s", text.c_str());
    }
    std::string prompt(const std::string &text) {
        SetPrompt(text.c_str());
        return PromptText;
    }
    std::string strip(const std::string &text) {
        EXPECT_EQ(ShowErrorStrip(text.c_str()), 100);
        return Headless.strips.back();
    }
};
using Prompt = Reporting;
using ErrorStrip = Reporting;
using MessageBoxes = Reporting;
using Alert = Reporting;

} // namespace

TEST_F(Prompt, IsPaintedOnceForTheSameText) {
    SetPrompt("hello");
    SetPrompt("hello");
    SetPromptQuick("hello");
    EXPECT_EQ(Headless.prompts, std::vector<std::string>({"hello"}));
    SetPromptQuick("other");
    EXPECT_EQ(Headless.prompts, std::vector<std::string>({"hello", "other"}));
}

TEST_F(Prompt, IsPaintedAgainWithoutAText) {
    SetPrompt("hello");
    SetPrompt(nullptr);
    SetPromptQuick(nullptr);
    EXPECT_EQ(Headless.prompts.size(), 3u);
    EXPECT_STREQ(PromptText, "hello");
}

TEST_F(Prompt, IsPutAtItsPlaceUnlessItMustBeQuick) {
    SetPrompt("hello");
    EXPECT_EQ(Headless.promptLayouts, 1);
    SetPromptQuick("other");
    SetPromptQuick(nullptr);
    EXPECT_EQ(Headless.promptLayouts, 1);
    SetPrompt(nullptr);
    EXPECT_EQ(Headless.promptLayouts, 2);
}

TEST_F(Prompt, LosesItsMarkWithoutASubstitute) {
    EXPECT_EQ(prompt("Pick @ now"), "Pick  now");
}

TEST_F(Prompt, TakesTheSubstituteForEachMark) {
    substitute("a@b");
    EXPECT_EQ(prompt("@, @"), "a@b, a@b") << "a mark in the substitute is text";
}

TEST_F(Prompt, IsCutAt253Characters) {
    EXPECT_EQ(prompt(std::string(300, 'x')), std::string(253, 'x'));
    substitute(std::string(200, 's'));
    EXPECT_EQ(prompt(std::string(100, 'x') + "@y"), std::string(100, 'x') + std::string(153, 's'));
    substitute(std::string(253, 's'));
    EXPECT_EQ(prompt("@@@"), std::string(253, 's'));
}

TEST_F(Prompt, EmptyTextEmptiesTheLine) {
    prompt("hello");
    EXPECT_EQ(prompt(""), "");
    EXPECT_EQ(Headless.prompts.back(), "");
}

TEST_F(ErrorStrip, ShowsTheTextBehindAPrefix) {
    EXPECT_EQ(strip("No room"), "ERROR: No room");
}

TEST_F(ErrorStrip, ShowsATextWithABackslashWithoutThePrefix) {
    EXPECT_EQ(strip("\\File successfully saved"), "File successfully saved");
}

TEST_F(ErrorStrip, CutsLongTexts) {
    EXPECT_EQ(strip(std::string(300, 'x')), "ERROR: " + std::string(239, 'x'));
    EXPECT_EQ(strip("\\" + std::string(300, 'x')), std::string(249, 'x'));
}

TEST_F(ErrorStrip, GoesAwayWithoutAText) {
    EXPECT_EQ(ShowErrorStrip(nullptr), 100);
    EXPECT_EQ(Headless.strips, std::vector<std::string>({""}));
}

TEST_F(ErrorStrip, DoesNothingWhileItIsBeingShown) {
    ErrorStripBusy = true;
    EXPECT_EQ(ShowErrorStrip("text"), 100);
    EXPECT_EQ(ShowErrorStrip(nullptr), 100);
    EXPECT_TRUE(Headless.strips.empty());
    ErrorStripBusy = false;
    strip("text");
    EXPECT_TRUE(Headless.stripWasBusy);
    EXPECT_FALSE(ErrorStripBusy);
}

TEST_F(MessageBoxes, ReturnOneForTheCallersResult) {
    EXPECT_EQ(UserError("bad file"), 1);
    EXPECT_EQ(ProgramError("no memory"), 1);
    EXPECT_EQ(Headless.userErrors, std::vector<std::string>({"bad file"}));
    EXPECT_EQ(Headless.programErrors, std::vector<std::string>({"no memory"}));
    EXPECT_EQ(Headless.captions, std::vector<std::string>({"Kelvane Error", "Kelvane Program Error"}));
}

TEST_F(MessageBoxes, FormatAndCutALongText) {
    UserErrorFormat("line %d of %s", 7, "a.wdl");
    EXPECT_EQ(Headless.userErrors.back(), "line 7 of a.wdl");
    UserErrorFormat("%s", std::string(600, 'x').c_str());
    EXPECT_EQ(Headless.userErrors.back(), std::string(511, 'x'));
}

TEST_F(MessageBoxes, GoToStandardErrorWhenAskedTo) {
    UserError("silent");
    Headless.printMessages = true;
    testing::internal::CaptureStderr();
    UserError("user");
    ProgramError("program");
    ShowErrorStrip("strip");
    ShowErrorStrip(nullptr);
    AlertBox("two", "", "lines", "Yes", "No", nullptr, AlertIcon::Question);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "user\nprogram\nERROR: strip\ntwo lines\n");
}

TEST_F(Alert, HasDefaultsForItsFirstLineAndButton) {
    AlertBox(nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, AlertIcon::None);
    EXPECT_EQ(Headless.alerts[0].lines, std::vector<std::string>({"Alert!"}));
    EXPECT_EQ(Headless.alerts[0].buttons, std::vector<std::string>({"OK"}));
    EXPECT_EQ(Headless.alerts[0].caption, "Kelvane");
}

TEST_F(Alert, ShowsWhatItIsGiven) {
    AlertBoxCaption("1", "2", "3", "Yes", "No", "Cancel", AlertIcon::Warning, 9, "Mine");
    const HeadlessAlert &alert = Headless.alerts[0];
    EXPECT_EQ(alert.lines, std::vector<std::string>({"1", "2", "3"}));
    EXPECT_EQ(alert.buttons, std::vector<std::string>({"Yes", "No", "Cancel"}));
    EXPECT_EQ(alert.caption, "Mine");
    EXPECT_EQ(alert.icon, 2);
}

TEST_F(Alert, GivesTheNumberOfTheButton) {
    Headless.alertAnswers = {2, 0};
    auto ask = [] { return AlertBox("?", nullptr, nullptr, "Yes", "No", nullptr, AlertIcon::Question); };
    EXPECT_EQ(ask(), 2);
    EXPECT_EQ(ask(), 0);
    EXPECT_EQ(ask(), 1);
}
