#include "util/clsCollection.h"

#include <gmock/gmock.h>

#include <random>
#include <stdexcept>

namespace fonklav {
namespace {

using namespace testing;

/// An entry of a phone book, say.
class Entry : public KeyedObject {
 public:
  explicit Entry(std::string key) : key_(std::move(key)) {}
  [[nodiscard]] std::string Key() const override {
    if (key_.empty()) throw std::runtime_error("no key yet");
    return key_;
  }

 private:
  std::string key_;
};

/// A collection whose events are written down.
struct Watched {
  Watched() {
    collection.QueueAdded = [this] { events.push_back("added"); };
    collection.QueueFull = [this] { events.push_back("full"); };
    collection.QueueTimerStart = [this] { events.push_back("timer"); };
  }
  std::vector<std::string> Texts() const {
    std::vector<std::string> texts;
    for (std::int32_t at = 1; at <= collection.Count(); ++at) texts.push_back(collection.Queue_GetByIndex(at));
    return texts;
  }
  std::vector<std::string> TakeEvents() { return std::exchange(events, {}); }

  clsCollection collection;
  std::vector<std::string> events;
};

TEST(Queue, TellsItsOwnerWhenItHasGrown) {
  Watched queue;
  queue.collection.Queue_InfoDealy(1);
  for (const char* line : {"a", "b", "c"}) EXPECT_TRUE(queue.collection.Queue_Add(line));
  EXPECT_THAT(queue.TakeEvents(), ElementsAre("timer", "added", "added"));
  EXPECT_EQ(queue.collection.Queue_ViewLast(), "a");
  EXPECT_EQ(queue.collection.Queue_ReadLast(), "a");
  EXPECT_THAT(queue.Texts(), ElementsAre("b", "c"));
}

TEST(Queue, KeepsTheNewestWithinItsLimit) {
  Watched queue;
  queue.collection.Queue_Limit(3);
  for (const char* line : {"a", "b", "c", "d"}) queue.collection.Queue_Add(line);
  EXPECT_THAT(queue.Texts(), ElementsAre("b", "c", "d"));
  EXPECT_EQ(queue.collection.Queue_ReadLast(), "b");
  queue.collection.Queue_Limit(1);
  queue.collection.Queue_Add("last");
  EXPECT_THAT(queue.Texts(), ElementsAre("last"));
  queue.collection.Queue_Limit(-1);  // nonsense keeps nothing, and ends
  queue.collection.Queue_Add("e");
  EXPECT_THAT(queue.Texts(), IsEmpty());
  queue.TakeEvents();
  EXPECT_EQ(queue.collection.Queue_ReadLast(), "");
  EXPECT_EQ(queue.collection.Queue_ViewLast(), "");
  EXPECT_THAT(queue.TakeEvents(), IsEmpty());
}

TEST(Queue, TakesTenThousandAndNoMore) {
  Watched queue;
  for (int line = 1; line <= 10000; ++line) ASSERT_TRUE(queue.collection.Queue_Add(std::to_string(line)));
  queue.TakeEvents();
  EXPECT_FALSE(queue.collection.Queue_Add("one too many"));
  EXPECT_THAT(queue.TakeEvents(), ElementsAre("full"));
  EXPECT_EQ(queue.collection.Count(), 10000);
  EXPECT_EQ(queue.collection.Queue_GetByIndex(10000), "10000");
  for (int line = 1; line <= 10000; ++line) ASSERT_EQ(queue.collection.Queue_ReadLast(), std::to_string(line));
}

TEST(Queue, KeysGoOnCountingAfterItemsWereRead) {
  clsCollection queue;
  for (int line = 0; line < 7; ++line) queue.Queue_Add("x");
  while (queue.Count() > 0) queue.RemoveFirst();
  queue.Queue_Add("y");
  EXPECT_EQ(queue.ItemByKeyValue("key8", "none"), "y");
  EXPECT_EQ(queue.ItemByKeyValue("Key7", "none"), "none");
}

TEST(Queue, AnOwnerMayEmptyItWhileItHears) {
  clsCollection queue;
  queue.QueueAdded = [&] {
    while (queue.Count() > 0) queue.Queue_ReadLast();
    throw std::runtime_error("and may even fail");
  };
  EXPECT_TRUE(queue.Queue_Add("a"));
  EXPECT_EQ(queue.Count(), 0);
}

TEST(KeyValues, AreFoundWithoutRegardToCase) {
  Watched settings;
  EXPECT_TRUE(settings.collection.AddByINIData("Größe", "10"));
  EXPECT_TRUE(settings.collection.AddByINIData("GRÖSSE", "")) << "another word";
  EXPECT_FALSE(settings.collection.AddByINIData("grÖßE", "11"));
  EXPECT_THAT(settings.TakeEvents(), ElementsAre("added", "added", "added"));
  EXPECT_EQ(settings.collection.ItemByKeyValue("Größe", "?"), "10");
  EXPECT_EQ(settings.collection.GetItemByIndexByKeyValue(1), "Größe=10");
}

TEST(KeyValues, AreChangedAndRemoved) {
  Watched settings;
  settings.collection.ChangeByKeyValue("a", "0");
  EXPECT_THAT(settings.Texts(), IsEmpty()) << "an empty collection stays empty";
  settings.collection.AddByINIData("a", "1");
  settings.collection.AddByINIData("b", "a=2,b=3,b=4");
  settings.collection.ChangeByKeyValue("A", "5");
  settings.collection.ChangeByKeyValue("c", "6");
  EXPECT_THAT(settings.Texts(), ElementsAre("b=a=2,b=3,b=4", "A=5", "c=6"));
  EXPECT_EQ(settings.collection.ItemByKeyValue("b", "?"), "a=2,3,4");
  EXPECT_TRUE(settings.collection.RemoveByKeyName("a"));
  EXPECT_FALSE(settings.collection.RemoveByKeyName("a"));
  EXPECT_THAT(settings.Texts(), ElementsAre("b=a=2,b=3,b=4", "c=6"));
  EXPECT_TRUE(settings.collection.RemoveByIndex(2));
  EXPECT_FALSE(settings.collection.RemoveByIndex(2));
  EXPECT_FALSE(settings.collection.RemoveByIndex(0));
  EXPECT_FALSE(settings.collection.RemoveByIndex(-1));
  EXPECT_THAT(settings.Texts(), ElementsAre("b=a=2,b=3,b=4"));
  settings.TakeEvents();
  settings.collection.Clear();
  EXPECT_FALSE(settings.collection.RemoveFirst());
  EXPECT_THAT(settings.TakeEvents(), IsEmpty());
}

TEST(Objects, BringTheirOwnKey) {
  Watched book;
  const auto anna = std::make_shared<Entry>("Anna");
  EXPECT_TRUE(book.collection.Add(anna));
  EXPECT_FALSE(book.collection.Add(std::make_shared<Entry>("ANNA")));
  EXPECT_FALSE(book.collection.Add(std::make_shared<Entry>("")));
  EXPECT_FALSE(book.collection.Add(nullptr));
  EXPECT_THAT(book.TakeEvents(), ElementsAre("added"));
  EXPECT_TRUE(book.collection.AddByKeyValue("note", std::string("text")));
  EXPECT_TRUE(book.collection.Add(std::make_shared<Entry>("Bob")));

  clsCollection::Object found;
  EXPECT_TRUE(book.collection.GetItemByKey("anna", found));
  EXPECT_EQ(found, anna);
  EXPECT_FALSE(book.collection.GetItemByKey("note", found)) << "a text is no object";
  EXPECT_EQ(found, nullptr);
  EXPECT_EQ(book.collection.GetItemByIndex(1), anna);
  EXPECT_EQ(book.collection.GetItemByIndex(2), nullptr);
  EXPECT_EQ(book.collection.GetItemByIndex(4), nullptr);
  EXPECT_EQ(book.collection.Queue_GetByIndex(1), "");
  EXPECT_EQ(book.collection.ItemByKeyValue("Anna", "?"), "?");

  const clsCollection copy = book.collection.Clone();
  EXPECT_EQ(copy.Count(), 2) << "only objects are copied";
  EXPECT_EQ(copy.ItemByKey("ANNA"), anna);
}

TEST(Objects, AreFiledUnderAnotherKey) {
  Watched book;
  for (const char* name : {"a", "b", "c"}) book.collection.AddByKeyValue(name, std::string(name));
  book.collection.ChangeKey("A", "x");
  EXPECT_EQ(book.collection.ItemByKeyValue("X", "?"), "a");
  EXPECT_EQ(book.collection.ItemByKeyValue("a", "?"), "?");
  book.collection.ChangeKey("b", "c");  // taken: nothing may be lost
  book.collection.ChangeKey("b", "B");
  book.collection.ChangeKey("nobody", "d");
  EXPECT_THAT(book.Texts(), ElementsAre("c", "a", "b"));
  EXPECT_EQ(book.collection.GetCollection().At(3)->first, "B");
}

TEST(KeyedItems, AgreeWithAPlainListUnderRandomUse) {
  std::mt19937 random(7);
  KeyedItems items;
  std::vector<std::string> model;
  for (int step = 0; step < 20000; ++step) {
    const auto place = model.empty() ? 0 : random() % model.size();
    switch (random() % 5) {
      case 0:
      case 1: {
        const std::string key = "K" + std::to_string(random() % 400);
        const bool fresh = std::ranges::find(model, key) == model.end();
        ASSERT_EQ(items.Add(key, std::string("v") + key), fresh);
        if (fresh) model.push_back(key);
        break;
      }
      case 2:
        ASSERT_EQ(items.TakeAt(static_cast<std::int64_t>(place) + 1).empty(), model.empty());
        if (!model.empty()) model.erase(model.begin() + static_cast<std::ptrdiff_t>(place));
        break;
      case 3:
        if (model.empty()) break;
        ASSERT_EQ(std::get<std::string>(items.Take(model[place]).mapped()), "v" + model[place]);
        model.erase(model.begin() + static_cast<std::ptrdiff_t>(place));
        break;
      default:
        if (model.empty()) break;
        ASSERT_EQ(items.At(static_cast<std::int64_t>(place) + 1)->first, model[place]);
        ASSERT_EQ(items.Find(model[place])->first, model[place]);
    }
    ASSERT_EQ(items.Count(), model.size());
    ASSERT_EQ(items.At(static_cast<std::int64_t>(model.size()) + 1), nullptr);
  }
}

}  // namespace
}  // namespace fonklav
