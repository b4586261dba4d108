#include "platform/profile.h"
#include "unit/support/fresh_store.h"
#include <climits>
#include <filesystem>

using namespace std::string_literals;

namespace {

class Profile : public testing::Test {
protected:
    // The value of key "k" in section "S" of a file with this text.
    std::string value(const std::string &text, int size = 100) {
        scratch.write("a.ini", text);
        return get("S", "k", size);
    }
    std::string get(const char *section, const char *key, int size = 100) {
        std::vector<char> buffer(static_cast<size_t>(size));
        int length = ProfileString(section, key, "none", buffer.data(), size, path.c_str());
        EXPECT_EQ(static_cast<size_t>(length), strlen(buffer.data()));
        return buffer.data();
    }
    int integer(const std::string &value) {
        scratch.write("a.ini", "[S]\nk=" + value + "\n");
        return ProfileInteger("S", "k", -77, path.c_str());
    }
    std::string after(const std::string &text, const char *section, const char *key, const char *value) {
        scratch.write("a.ini", text);
        EXPECT_TRUE(SetProfileString(section, key, value, path.c_str()));
        return ReadWholeFile(path);
    }
    ScratchDirectory scratch;
    std::string path = scratch.file("a.ini");
};

} // namespace

TEST_F(Profile, FindsAValueInItsSection) {
    EXPECT_EQ(value("[R]\nk=1\n[S]\nj=2\nk=3\n[T]\nk=4\n"), "3");
}

TEST_F(Profile, GivesTheFallbackForWhatIsNotThere) {
    EXPECT_EQ(get("S", "k"), "none");
    EXPECT_EQ(value(""), "none");
    EXPECT_EQ(value("k=1\n[R]\nk=2\n"), "none");
    EXPECT_EQ(value("[S]\nj=1\nk\n"), "none");
}

TEST_F(Profile, CutsTheFallbackToTheBuffer) {
    EXPECT_EQ(get("S", "k", 3), "no");
}

TEST_F(Profile, ComparesNamesWithoutCase) {
    EXPECT_EQ(value("[s]\nK=Abc\n"), "Abc");
}

TEST_F(Profile, TakesTheFirstOfSeveral) {
    EXPECT_EQ(value("[S]\nk=1\nk=2\n[S]\nk=3\n"), "1");
    EXPECT_EQ(value("[S]\nj=1\n[S]\nk=3\n"), "none");
}

TEST_F(Profile, DropsTheBlanksAroundNamesAndValue) {
    EXPECT_EQ(value("  [ S ] \n \t k \t=\t a b \t\r\n"), "a b");
}

TEST_F(Profile, StripsOnePairOfQuotes) {
    EXPECT_EQ(value("[S]\nk=\" a \"\n"), " a ");
    EXPECT_EQ(value("[S]\nk='a'\n"), "a");
    EXPECT_EQ(value("[S]\nk=\"\"a\"\"\n"), "\"a\"");
    EXPECT_EQ(value("[S]\nk='a\"\n"), "'a\"");
    EXPECT_EQ(value("[S]\nk=\"\n"), "\"");
}

TEST_F(Profile, PassesOverCommentLinesOnly) {
    EXPECT_EQ(value("[S]\n;k=1\n  ; k=2\nk=3;4\n"), "3;4");
}

TEST_F(Profile, AnEmptyValueIsAValue) {
    EXPECT_EQ(value("[S]\nk=\n"), "");
}

TEST_F(Profile, TheValueBeginsBehindTheFirstEqualsSign) {
    EXPECT_EQ(value("[S]\nk==a=b\n"), "=a=b");
}

TEST_F(Profile, CutsTheValueToTheBuffer) {
    EXPECT_EQ(value("[S]\nk=abcdef\n", 4), "abc");
}

TEST_F(Profile, ReadsADamagedFileAsFarAsItMakesSense) {
    EXPECT_EQ(value("[S]\nk=1"), "1") << "no line end";
    EXPECT_EQ(value("[S]\rk=1\r"), "1") << "old line ends";
    EXPECT_EQ(value("[S\nk=1\n[S]\nk=2\n"), "2") << "a section without its bracket";
    EXPECT_EQ(value("[S]\n[R\nk=1\n"), "1") << "another section without its bracket";
    EXPECT_EQ(value("[S] ] x\nk=1\n[S] x\nk=2\n"), "2") << "text behind the bracket";
    EXPECT_EQ(value("\0\0\n[S]\nk=a\0b\n"s), "a") << "NUL bytes";
    EXPECT_EQ(value("[S\0]\nk\0k=a\n"s), "a") << "NUL bytes in names";
    EXPECT_EQ(value("[S]\nj=" + std::string(65536, 'x') + "\nk=1\n"), "1") << "an endless line";
    EXPECT_EQ(value("[" + std::string(65536, 'x') + "\n[S]\nk=1\n"), "1") << "an endless section";
    EXPECT_EQ(value("\xef\xbb\xbf[S]\nk=1\n"), "1") << "a byte order mark";
    EXPECT_EQ(value("[S]\nk=\xe4\xff\n"), "\xe4\xff") << "bytes above 127";
    EXPECT_EQ(value("[S]\nk=1\x1a\n"), "1") << "an end mark";
}

TEST_F(Profile, ReadsADirectoryAsAnEmptyFile) {
    std::filesystem::create_directory(path);
    EXPECT_EQ(get("S", "k"), "none");
}

TEST_F(Profile, ReadsIntegersAsFarAsTheyGo) {
    EXPECT_EQ(integer("12"), 12);
    EXPECT_EQ(integer("-3"), -3);
    EXPECT_EQ(integer("+5"), 5);
    EXPECT_EQ(integer("12abc"), 12);
    EXPECT_EQ(integer("5 6"), 5);
    EXPECT_EQ(integer("\" 7 \""), 7);
    EXPECT_EQ(integer("010"), 10);
    EXPECT_EQ(integer("0x10"), 0);
    EXPECT_EQ(integer("abc"), 0);
    EXPECT_EQ(integer("-"), 0);
}

TEST_F(Profile, AnEmptyIntegerIsNone) {
    EXPECT_EQ(integer(""), -77);
    EXPECT_EQ(ProfileInteger("S", "j", 5, path.c_str()), 5);
}

TEST_F(Profile, ClampsIntegersTo32Bits) {
    EXPECT_EQ(integer("2147483647"), INT_MAX);
    EXPECT_EQ(integer("2147483648"), INT_MAX);
    EXPECT_EQ(integer("-2147483648"), INT_MIN);
    EXPECT_EQ(integer("-2147483649"), INT_MIN);
    EXPECT_EQ(integer(std::string(60, '9')), INT_MAX);
    EXPECT_EQ(integer("-" + std::string(500, '9')), INT_MIN);
}

TEST_F(Profile, WritingMakesTheFile) {
    ASSERT_TRUE(SetProfileString("S", "k", "1", path.c_str()));
    EXPECT_EQ(ReadWholeFile(path), "[S]\nk=1\n");
}

TEST_F(Profile, WritingReplacesTheFirstValueInItsPlace) {
    EXPECT_EQ(after("; mine\n[S]\nj=1\nK = 2\nk=3\n[T]\n", "S", "k", "new"),
              "; mine\n[S]\nj=1\nk=new\nk=3\n[T]\n");
}

TEST_F(Profile, WritingAddsAKeyAtTheEndOfItsSection) {
    EXPECT_EQ(after("[S]\nj=1\n\n\n[T]\nk=1\n", "S", "k", "new"), "[S]\nj=1\nk=new\n\n\n[T]\nk=1\n");
    EXPECT_EQ(after("[S]", "S", "k", "new"), "[S]\nk=new\n");
}

TEST_F(Profile, WritingAddsASectionAtTheEnd) {
    EXPECT_EQ(after("k=1\n;c", "S", "k", "new"), "k=1\n;c\n[S]\nk=new\n");
}

TEST_F(Profile, WritingKeepsTheLineEndsOfTheFile) {
    EXPECT_EQ(after("[S]\r\nk=1\r\n", "S", "j", "2"), "[S]\r\nk=1\r\nj=2\r\n");
}

TEST_F(Profile, WritingFailsWhereTheFileIsReadOnly) {
    scratch.write("a.ini", "[S]\nk=1\n");
    std::filesystem::permissions(path, std::filesystem::perms::owner_read);
    EXPECT_FALSE(SetProfileString("S", "k", "2", path.c_str()));
    EXPECT_FALSE(SetProfileString("S", "k", "2", ""));
    EXPECT_EQ(ReadWholeFile(path), "[S]\nk=1\n");
}
