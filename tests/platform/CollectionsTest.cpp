#include "platform/CArray.h"
#include "platform/CMapPtrToPtr.h"
#include "platform/CPtrList.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

namespace {

/// Gives away how much room there is.
class MeasuredArray : public CArray<int> {
public:
    using CArray<int>::capacity;
};

template <class List>
std::vector<void*> items_of(const List& list)
{
    std::vector<void*> items;
    for (POSITION at = list.GetHeadPosition(); at != nullptr;)
        items.push_back(list.GetNext(at));
    return items;
}

}  // namespace

TEST(CArray, Growth_ByAnEighthAtLeastFourAtMostThousandAndTwentyFour)
{
    MeasuredArray array;
    array.SetSize(8);
    EXPECT_EQ(array.capacity(), 8);
    array.Add(1);
    EXPECT_EQ(array.capacity(), 12);
    array.SetSize(160);
    array.Add(1);
    EXPECT_EQ(array.capacity(), 180);
    array.SetSize(100'000);
    array.Add(1);

    EXPECT_EQ(array.capacity(), 101'024);
}

TEST(CArray, GrowthStep_IsKeptWhenGiven)
{
    MeasuredArray array;
    array.SetSize(10, 50);
    array.Add(1);

    EXPECT_EQ(array.capacity(), 60);
}

TEST(CArray, AddAnElementOfItself_CopiesItBeforeItMoves)
{
    CArray<std::string> array;
    array.Add("a rather long text that lies outside of the object itself");
    for (int i = 0; i < 20; ++i)
        array.Add(array[0]);
    array.InsertAt(0, array[20], 3);

    EXPECT_EQ(array.GetSize(), 24);
    EXPECT_EQ(array[0], array[23]);
}

TEST(CArray, SetAtGrow_FillsTheGapWithDefaults)
{
    CArray<int> array;
    array.SetAtGrow(3, 7);

    EXPECT_EQ(array.GetSize(), 4);
    EXPECT_EQ(array[0], 0);
    EXPECT_EQ(array[3], 7);
}

TEST(CArray, InsertAndRemove_ShiftTheRest)
{
    CArray<int> array;
    for (int i = 0; i < 5; ++i)
        array.Add(i);
    array.InsertAt(1, 9, 2);
    array.RemoveAt(0, 2);
    array.InsertAt(8, 5);

    const std::vector<int> expected = {9, 1, 2, 3, 4, 0, 0, 0, 5};
    EXPECT_EQ(std::vector<int>(array.GetData(), array.GetData() + array.GetSize()), expected);
}

TEST(CArray, Append_ReturnsTheFirstNewIndexAlsoForItself)
{
    CArray<int> array;
    array.Add(1);
    array.Add(2);

    EXPECT_EQ(array.Append(array), 2);
    EXPECT_EQ(array.GetSize(), 4);
    EXPECT_EQ(array[3], 2);
    array.RemoveAll();
    EXPECT_EQ(array.GetUpperBound(), -1);
}

TEST(CPtrList, AddAndInsert_KeepTheOrder)
{
    int values[4] = {};
    CPtrList list;
    const POSITION middle = list.AddTail(&values[1]);
    list.AddHead(&values[0]);
    list.InsertAfter(middle, &values[3]);
    list.InsertBefore(list.GetTailPosition(), &values[2]);

    EXPECT_EQ(items_of(list), (std::vector<void*>{&values[0], &values[1], &values[2], &values[3]}));
    EXPECT_EQ(list.GetHead(), &values[0]);
    EXPECT_EQ(list.GetTail(), &values[3]);
    EXPECT_EQ(list.GetCount(), 4);
}

TEST(CPtrList, RemoveOnTheWay_OtherPositionsStayGood)
{
    int values[100] = {};
    CPtrList list;
    for (int& value : values)
        list.AddTail(&value);
    const POSITION last = list.GetTailPosition();
    for (POSITION at = list.GetHeadPosition(); at != nullptr;) {
        const POSITION here = at;
        const auto index = static_cast<int*>(list.GetNext(at)) - values;
        if (index % 3 == 0 && here != last)
            list.RemoveAt(here);
    }

    EXPECT_EQ(list.GetCount(), 67);
    EXPECT_EQ(list.GetAt(last), &values[99]);
    EXPECT_EQ(list.Find(&values[3]), nullptr);
    EXPECT_EQ(list.FindIndex(0), list.Find(&values[1]));
}

TEST(CPtrList, RemovedElements_ArePlacesForNewOnes)
{
    int value = 0;
    CPtrList list;
    for (int round = 0; round < 1000; ++round) {
        list.AddTail(&value);
        EXPECT_EQ(list.RemoveHead(), &value);
    }
    list.AddHead(&value);
    EXPECT_EQ(list.RemoveTail(), &value);

    EXPECT_TRUE(list.IsEmpty());
    EXPECT_EQ(list.GetHeadPosition(), nullptr);
}

TEST(CPtrList, FindBehindAPlace_GivesTheNextOccurrence)
{
    int value = 0;
    int other = 0;
    CPtrList list;
    const POSITION first = list.AddTail(&value);
    list.AddTail(&other);
    const POSITION second = list.AddTail(&value);

    EXPECT_EQ(list.Find(&value), first);
    EXPECT_EQ(list.Find(&value, first), second);
    EXPECT_EQ(list.Find(&value, second), nullptr);
    EXPECT_EQ(list.FindIndex(3), nullptr);
    EXPECT_EQ(list.FindIndex(-1), nullptr);
}

TEST(CMapPtrToPtr, LookupSetRemove_ByKey)
{
    int keys[2] = {};
    int value = 0;
    CMapPtrToPtr map;
    map.SetAt(&keys[0], &value);
    void* found = &keys;

    EXPECT_FALSE(map.Lookup(&keys[1], found));
    EXPECT_EQ(found, &keys);
    EXPECT_TRUE(map.Lookup(&keys[0], found));
    EXPECT_EQ(found, &value);
    map[&keys[1]] = &value;
    EXPECT_EQ(map.GetCount(), 2);
    EXPECT_TRUE(map.RemoveKey(&keys[0]));
    EXPECT_FALSE(map.RemoveKey(&keys[0]));
}

TEST(CMapPtrToPtr, WalkThatRemovesWhatItWasGiven_SeesEveryEntryOnce)
{
    int keys[500] = {};
    CMapPtrToPtr map;
    for (int& key : keys)
        map.SetAt(&key, &keys);
    std::set<void*> seen;
    for (POSITION at = map.GetStartPosition(); at != nullptr;) {
        void* key = nullptr;
        void* value = nullptr;
        map.GetNextAssoc(at, key, value);
        EXPECT_TRUE(seen.insert(key).second);
        map.RemoveKey(key);
    }

    EXPECT_EQ(seen.size(), 500u);
    EXPECT_TRUE(map.IsEmpty());
    EXPECT_EQ(map.GetStartPosition(), nullptr);
}
