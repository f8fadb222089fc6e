#include "Platform/PreferencesStore.h"

#include <gmock/gmock.h>

#include <limits>

#include "Platform/ManualMainLoop.h"
#include "Support/TemporaryFolder.h"

namespace orvane {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

struct PreferencesStoreTest : testing::Test {
    TemporaryFolder folder;
    ManualMainLoop loop;
    BackgroundPool pool{1};
    SerialQueue queue{pool};
    std::vector<std::string> errors;

    std::unique_ptr<PreferencesStore> open() {
        return std::make_unique<PreferencesStore>(loop, queue, folder.path("p.json"), [this](const SystemError& error) {
            errors.push_back(error.message());
        });
    }
};

TEST_F(PreferencesStoreTest, KeepsWhatIsSetSortedOnePerLine) {
    auto store = open();
    store->setString("b.text", "quote \" line\n umlaut \xC3\xA4 broken \xFF\xED\xA0\x80 end");
    store->setNumber("b.number", 0.1);
    store->setInteger("a.integer", std::numeric_limits<std::int64_t>::min());
    store->setBoolean("a.boolean", true);
    store->setCounts("c", {{"x.y", 3}, {"a", -1}});
    store->setInteger("gone", 1);
    store->setNumber("gone", std::numeric_limits<double>::quiet_NaN());
    store.reset();
    EXPECT_EQ(folder.read("p.json"), R"({
  "a.boolean": true,
  "a.integer": -9223372036854775808,
  "b.number": 0.1,
  "b.text": "quote \" line\n umlaut ä broken ���� end",
  "c": {"a":-1,"x.y":3}
}
)");
    store = open();
    EXPECT_TRUE(store->boolean("a.boolean", false));
    EXPECT_EQ(store->integer("a.integer", 0), std::numeric_limits<std::int64_t>::min());
    EXPECT_EQ(store->number("b.number", 0), 0.1);
    EXPECT_THAT(store->string("b.text", ""), HasSubstr("quote \" line\n umlaut \xC3\xA4 broken"));
    EXPECT_EQ(store->counts("c"), (PreferencesStore::Counts{{"a", -1}, {"x.y", 3}}));
    EXPECT_FALSE(store->contains("gone"));
    store->remove("c");
    EXPECT_TRUE(store->flush());
    EXPECT_THAT(folder.read("p.json"), Not(HasSubstr("\"c\"")));
    EXPECT_TRUE(errors.empty());
}

TEST_F(PreferencesStoreTest, LeavesForeignValuesAsTheyAreWritten) {
    folder.write("p.json", R"( {"z":12345678901234567890123, "n": 1.50, "o" : { "k\"}" : [ 1, "a ,}" ,
        {} ] },"dup":1,"dup":2, "k\u0065y":null, "three": 3e0, "e":""})");
    auto store = open();
    EXPECT_EQ(store->integer("z", 7), 7);
    EXPECT_EQ(store->boolean("n", true), true);
    EXPECT_EQ(store->string("n", "none"), "none");
    EXPECT_EQ(store->counts("o").size(), 0U);
    EXPECT_EQ(store->integer("three", 0), 3);
    store->setBoolean("new", false);
    EXPECT_TRUE(store->flush());
    EXPECT_EQ(folder.read("p.json"),
              "{\n  \"dup\": 2,\n  \"e\": \"\",\n  \"key\": null,\n  \"n\": 1.50,\n  \"new\": false,\n"
              "  \"o\": {\"k\\\"}\":[1,\"a ,}\",{}]},\n  \"three\": 3e0,\n  \"z\": 12345678901234567890123\n}\n");
}

TEST_F(PreferencesStoreTest, KeepsEveryCorruptFileBeforeTheFirstChange) {
    const std::vector<std::string> corrupt{"{\"a\": 1", "[1]", "{} x", "{\"a\":\"\xFF\"}", std::string(200, '[')};
    for (const std::string& text : corrupt) {
        folder.write("p.json", text);
        auto store = open();
        EXPECT_EQ(store->integer("a", 5), 5);
        EXPECT_TRUE(store->flush());
        EXPECT_EQ(folder.read("p.json"), text) << "reading alone changed it";
        store->setInteger("a", 2);
        store->setInteger("b", 3);
    }
    const std::string name = "p.json.corrupt-20260101T000000Z";
    EXPECT_THAT(folder.names(), ElementsAre("p.json", name, name + "-2", name + "-3", name + "-4", name + "-5"));
    EXPECT_EQ(folder.read(name), corrupt[0]);
    EXPECT_EQ(folder.read(name + "-5"), corrupt[4]);
    EXPECT_EQ(folder.read("p.json"), "{\n  \"a\": 2,\n  \"b\": 3\n}\n");

    folder.write("p.json", " \n");  // empty is not corrupt
    auto store = open();
    store->setInteger("a", 1);
    EXPECT_TRUE(store->flush());
    EXPECT_EQ(folder.names().size(), 6U);
}

TEST_F(PreferencesStoreTest, DoesNotReplaceWhatItCannotKeep) {
    std::filesystem::create_directory(folder.path("p.json"));
    auto store = open();
    store->setInteger("a", 1);
    store->setInteger("a", 2);
    EXPECT_EQ(store->flush().error().number, EISDIR);
    loop.runPosted();
    EXPECT_EQ(errors.size(), 2U);  // of reading and of keeping, each once
    EXPECT_EQ(store->integer("a", 0), 2);
    std::filesystem::remove(folder.path("p.json"));
    EXPECT_TRUE(store->flush());
    EXPECT_EQ(folder.read("p.json"), "{\n  \"a\": 2\n}\n");
}

TEST_F(PreferencesStoreTest, TellsChangesInALaterTurn) {
    auto store = open();
    std::string told;
    Registration second;
    auto first = store->onChange([&](std::string_view key) {
        told += key;
        second.reset();
    });
    second = store->onChange([&](std::string_view) { told += "never"; });
    store->setInteger("a", 1);
    store->setInteger("a", 1);
    store->remove("b");
    EXPECT_EQ(told, "");
    loop.runPosted();
    EXPECT_EQ(told, "a");
}

}  // namespace
}  // namespace orvane
