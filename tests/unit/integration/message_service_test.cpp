#include "integration/suite/design_context.h"
#include "integration/suite/message_service.h"
#include <gtest/gtest.h>
#include <string>
#include <tuple>
#include <vector>

namespace {

std::vector<std::tuple<uint32_t, uint32_t, uint32_t>> Heard;

void Listen(uint32_t messageClass, uint32_t detail, uint32_t data) {
    Heard.emplace_back(messageClass, detail, data);
}

} // namespace

TEST(MessageService, HoldsAStringUntilItIsDestroyed) {
    ServiceString first = MRStrCreate("first"), second = MRStrCreate("");
    ASSERT_NE(first, 0u);
    ASSERT_NE(second, 0u);
    ASSERT_NE(first, second);
    char text[10];
    EXPECT_EQ(MRStrGetCopy(first, text, sizeof text), 1);
    EXPECT_STREQ(text, "first");
    EXPECT_EQ(MRStrGetCopy(second, text, sizeof text), 1);
    EXPECT_STREQ(text, "");
    MRStrDestroy(first);
    EXPECT_EQ(MRStrGetCopy(first, text, sizeof text), 0);
    MRStrDestroy(second);
}

TEST(MessageService, CutsACopyToItsBuffer) {
    ServiceString string = MRStrCreate("abcdef");
    char text[4];
    EXPECT_EQ(MRStrGetCopy(string, text, sizeof text), 1);
    EXPECT_STREQ(text, "abc");
    EXPECT_EQ(MRStrGetCopy(string, text, 0), 0);
    MRStrDestroy(string);
}

TEST(MessageService, RefusesHandlesThatItDidNotGive) {
    char text[4];
    for (ServiceString string : {0u, 1u, 64u, 65u, 4294967295u}) {
        EXPECT_EQ(MRStrGetCopy(string, text, sizeof text), 0);
        MRStrDestroy(string);
    }
    EXPECT_EQ(MRStrCreate(nullptr), 0u);
}

TEST(MessageService, FailsWhenItIsFullAndGoesOnOnceThereIsRoom) {
    std::vector<ServiceString> strings;
    while (ServiceString string = MRStrCreate("x")) strings.push_back(string);
    ASSERT_FALSE(strings.empty());
    MRStrDestroy(strings.back());
    EXPECT_EQ(MRStrCreate("y"), strings.back());
    for (ServiceString string : strings) MRStrDestroy(string);
}

TEST(MessageService, TellsTheListenerEachBroadcast) {
    MRBroadcastMsg(1, 2, 3);
    BroadcastListener = Listen;
    MRBroadcastMsg(7, 2, 5);
    BroadcastListener = nullptr;
    MRBroadcastMsg(1, 2, 3);
    ASSERT_EQ(Heard.size(), 1u);
    EXPECT_EQ(Heard[0], std::make_tuple(7u, 2u, 5u));
}

TEST(DesignContext, HasNoSymbolsAndNoOtherPaths) {
    DesignContext context = OGXEDAOpenCurrentContext();
    ASSERT_NE(context, 0);
    char text[260] = "old";
    OGXEDACopyContextSymbol(context, "DeviceFamily", text);
    EXPECT_STREQ(text, "");
    OGXEDACopyContextPath(context, "elsewhere", text);
    EXPECT_STREQ(text, "");
    OGXEDACloseContext(context);
}
