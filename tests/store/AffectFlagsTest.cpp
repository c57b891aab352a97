#include "Store.h"

namespace {

using namespace brimlet::test;
using Rows = std::vector<Row>;

class AffectFlags : public StoreTest
{
protected:
    void addOne(const std::string &event) { ASSERT_EQ(update(addEvent, R"({"D":)" + event + "}").code, 0u); }

    std::optional<std::string> flag(const std::string &id) const
    {
        return file.value("SELECT EventsAffect FROM Events WHERE EventsId = " + id);
    }
};

TEST_F(AffectFlags, RemovingClearsTheFlagAndNothingElse)
{
    addOne(R"({"id":5,"time":1000,"device":10,"section":1,"zone":2,"active":200,"class":3,"detector":4,"reason":6,)"
           R"("localtime":1100,"channel":-8,"data":"d","review_id":9,"review_state":7,"operator_id":70,)"
           R"("is_closed":1,"affect":1,"jdata":"j"})");
    addOne(R"({"id":6,"affect":1})");
    EXPECT_EQ(update(removeAffectFlag, R"({"D":{"id":5}})").code, 0u);
    EXPECT_EQ(
        file.rows("SELECT EventsId,EventsTime,EventsDeviceId,EventsSectionId,EventsZoneId,EventsActive,"
                  "EventsClass,EventsDetector,EventsReason,EventsLocalTime,EventsChannel,EventsData,"
                  "EventsReviewId,EventsReviewState,EventsUserId,EventsIsClosed,EventsJData "
                  "FROM Events WHERE EventsId = 5"),
        (Rows{Row{"5", "1000", "10", "1", "2", "200", "3", "4", "6", "1100", "-8", "d", "9", "7", "70", "1", "j"}}));
    EXPECT_EQ(file.rows("SELECT EventsAffect,typeof(EventsAffect) FROM Events ORDER BY EventsId"),
              (Rows{Row{"0", "integer"}, Row{"1", "integer"}}));
}

TEST_F(AffectFlags, RemovingReturnsTheStoredEventWithItsNames)
{
    ASSERT_EQ(send(addDevice, R"({"D":{"id":10,"account":1234,)"
                              R"("sections":[{"id":1,"name":"hall","zones":[{"id":2,"name":"door"}]}]}})"),
              0u);
    ASSERT_EQ(send(addDomains, R"({"D":{"items":[{"id":30,"name":"night"}]}})"), 0u);
    ASSERT_EQ(send(addUsers, R"({"D":{"items":[{"id":70,"domain":30}]}})"), 0u);
    addOne(R"({"id":5,"time":1000,"device":10,"section":1,"zone":2,"operator_id":70,"data":"d","affect":1})");
    const auto event = update(removeAffectFlag, R"({"D":{"id":5}})");
    ASSERT_EQ(event.code, 0u);
    EXPECT_EQ(event->id, 5u);
    EXPECT_EQ(value(event->affect), 0);
    EXPECT_EQ(value(event->time), 1000u);
    EXPECT_EQ(value(event->deviceId), 10);
    EXPECT_EQ(utf8(event->data), "d");
    EXPECT_EQ(event->isClosed, nullptr);
    EXPECT_EQ(value(event->account), 1234u);
    EXPECT_EQ(utf8(event->sectionName), "hall");
    EXPECT_EQ(utf8(event->zoneName), "door");
    EXPECT_EQ(utf8(event->domainName), "night");
}

TEST_F(AffectFlags, RemovingDoesNotNeedTheDevice)
{
    addOne(R"({"id":5,"device":10,"affect":1})");
    const auto event = update(removeAffectFlag, R"({"D":{"id":5}})");
    ASSERT_EQ(event.code, 0u);
    EXPECT_EQ(value(event->deviceId), 10);
    EXPECT_EQ(value(event->affect), 0);
    EXPECT_EQ(event->account, nullptr);
}

TEST_F(AffectFlags, RemovingAFlagThatIsNotSetLeavesItZero)
{
    addOne(R"({"id":5,"affect":0})");
    addOne(R"({"id":6})");
    const auto unset = update(removeAffectFlag, R"({"D":{"id":5}})");
    ASSERT_EQ(unset.code, 0u);
    EXPECT_EQ(value(unset->affect), 0);
    const auto absent = update(removeAffectFlag, R"({"D":{"id":6}})");
    ASSERT_EQ(absent.code, 0u);
    EXPECT_EQ(value(absent->affect), 0);
    EXPECT_EQ(flag("5"), "0");
    EXPECT_EQ(flag("6"), "0");
}

TEST_F(AffectFlags, ARemovedFlagIsListedNoMore)
{
    ASSERT_EQ(send(addDevice, R"({"D":{"id":10}})"), 0u);
    addOne(R"({"id":5,"device":10,"time":1,"affect":1})");
    ASSERT_EQ(list(getAffectEvents).size(), 1u);
    ASSERT_EQ(update(removeAffectFlag, R"({"D":{"id":5}})").code, 0u);
    EXPECT_EQ(list(getAffectEvents).code, 8u);
    EXPECT_EQ(list(getEvents, 1, 1).size(), 1u);
}

TEST_F(AffectFlags, TheIdIsConvertedAndAnyOtherTypeIsZero)
{
    addOne(R"({"id":7,"affect":1})");
    addOne(R"({"id":4294967295,"affect":1})");
    for (const char *id : {R"("7")", "null", "true", "[7]", "{}"})
        EXPECT_EQ(update(removeAffectFlag, std::string(R"({"D":{"id":)") + id + "}}").code, 8u) << id;
    EXPECT_EQ(flag("7"), "1");
    EXPECT_EQ(update(removeAffectFlag, R"({"D":{"id":7.9}})").code, 0u);
    EXPECT_EQ(flag("7"), "0");
    EXPECT_EQ(update(removeAffectFlag, R"({"D":{"id":-1}})").code, 0u);
    EXPECT_EQ(flag("4294967295"), "0");
    addOne(R"({"id":0,"affect":1})");
    const auto zero = update(removeAffectFlag, R"({"D":{"id":"7"}})");
    ASSERT_EQ(zero.code, 0u);
    EXPECT_EQ(zero->id, 0u);
    EXPECT_EQ(flag("0"), "0");
}

TEST_F(AffectFlags, RemovingRefusesABrokenDocument)
{
    addOne(R"({"id":0,"affect":1})");
    EXPECT_EQ(update(removeAffectFlag, "").code, 10u);
    EXPECT_EQ(update(removeAffectFlag, "not json").code, 10u);
    EXPECT_EQ(update(removeAffectFlag, "[0]").code, 10u);
    EXPECT_EQ(update(removeAffectFlag, R"({"id":0})").code, 5u);
    EXPECT_EQ(update(removeAffectFlag, R"({"D":0})").code, 5u);
    EXPECT_EQ(update(removeAffectFlag, R"({"D":[]})").code, 5u);
    EXPECT_EQ(update(removeAffectFlag, R"({"D":{}})").code, 5u);
    EXPECT_EQ(update(removeAffectFlag, R"({"D":{"event_id":0}})").code, 5u);
    EXPECT_EQ(flag("0"), "1");
}

TEST_F(AffectFlags, OtherMembersAreNotRead)
{
    addOne(R"({"id":5,"time":1,"affect":1})");
    EXPECT_EQ(update(removeAffectFlag, R"({"D":{"id":5,"time":"x","affect":1,"data":null}})").code, 0u);
    EXPECT_EQ(file.rows("SELECT EventsTime,EventsAffect,EventsData FROM Events"), (Rows{Row{"1", "0", std::nullopt}}));
}

TEST_F(AffectFlags, RemovingReturns8ForAnUnknownEvent)
{
    addOne(R"({"id":5,"affect":1})");
    DebugLines lines;
    const auto event = update(removeAffectFlag, R"({"D":{"id":6}})");
    EXPECT_EQ(event.code, 8u);
    EXPECT_EQ(event.record.get(), nullptr);
    EXPECT_EQ(lines.all(), std::vector<std::string>{});
    EXPECT_EQ(flag("5"), "1");
}

// ---- The out-parameter ----

TEST_F(AffectFlags, ABlockThatTheClientPassesIsReleasedWithoutItsInnerParts)
{
    addOne(R"({"id":5,"affect":1})");
    FlatEvent *out = nullptr;
    ASSERT_EQ(send(addEvent, &out, R"({"D":{"id":6,"time":1000,"data":"mine"}})"), 0u);
    const FlatEvent inner = *out;
    ASSERT_EQ(send(removeAffectFlag, &out, R"({"D":{"id":5}})"), 0u);
    const Owned<FlatEvent> result(out);
    EXPECT_EQ(result->id, 5u);
    EXPECT_EQ(result->time, nullptr);
    EXPECT_EQ(result->data, nullptr);
    EXPECT_EQ(value(result->affect), 0);

    // The parts of the old block are still there, and still to be freed.
    EXPECT_EQ(value(inner.time), 1000u);
    EXPECT_EQ(utf8(inner.data), "mine");
    FlatEvent *carrier = nullptr;
    ASSERT_EQ(send(addEvent, &carrier, R"({"D":{"id":7}})"), 0u);
    *carrier = inner;
    EXPECT_EQ(freeEvent(carrier), 0u);
}

TEST_F(AffectFlags, TheSameOutParameterMayBeUsedAgain)
{
    addOne(R"({"id":5,"affect":1})");
    addOne(R"({"id":6,"affect":1})");
    FlatEvent *out = nullptr;
    ASSERT_EQ(send(removeAffectFlag, &out, R"({"D":{"id":5}})"), 0u);
    const FlatEvent first = *out;
    ASSERT_EQ(send(removeAffectFlag, &out, R"({"D":{"id":6}})"), 0u);
    EXPECT_EQ(out->id, 6u);
    EXPECT_NE(out->affect, first.affect);
    EXPECT_EQ(freeEvent(out), 0u);
    out = nullptr;
    ASSERT_EQ(send(addEvent, &out, R"({"D":{"id":7}})"), 0u);
    *out = first;
    EXPECT_EQ(freeEvent(out), 0u);
}

TEST_F(AffectFlags, ABlockThatTheClientPassesStaysOnEveryFailure)
{
    addOne(R"({"id":5,"affect":1})");
    FlatEvent *out = nullptr;
    ASSERT_EQ(send(addEvent, &out, R"({"D":{"id":6,"data":"mine"}})"), 0u);
    const Owned<FlatEvent> mine(out);
    const auto expectUntouched = [&] {
        EXPECT_EQ(out, mine.get());
        EXPECT_EQ(mine->id, 6u);
        EXPECT_EQ(utf8(mine->data), "mine");
    };
    EXPECT_EQ(send(removeAffectFlag, &out, "not json"), 10u);
    expectUntouched();
    EXPECT_EQ(send(removeAffectFlag, &out, R"({"D":{}})"), 5u);
    expectUntouched();
    EXPECT_EQ(send(removeAffectFlag, &out, R"({"D":{"id":9}})"), 8u);
    expectUntouched();
    refuse("UPDATE", "Events");
    EXPECT_EQ(send(removeAffectFlag, &out, R"({"D":{"id":5}})"), 9u);
    expectUntouched();
    foreign("DROP TABLE Events");
    EXPECT_EQ(send(removeAffectFlag, &out, R"({"D":{"id":5}})"), 7u);
    expectUntouched();
}

// ---- Failures of the removal ----

TEST_F(AffectFlags, RemovingReturns7WhenTheEventCannotBeFound)
{
    foreign("DROP TABLE Events");
    DebugLines lines;
    const auto event = update(removeAffectFlag, R"({"D":{"id":5}})");
    EXPECT_EQ(event.code, 7u);
    EXPECT_EQ(event.record.get(), nullptr);
    EXPECT_TRUE(isFailure(lines.all(), "is event exists error"));
}

TEST_F(AffectFlags, LookingForTheEventNeedsItsOwnTableOnly)
{
    addOne(R"({"id":5,"affect":1})");
    foreign("DROP TABLE Users; DROP TABLE Devices");
    DebugLines lines;
    EXPECT_EQ(update(removeAffectFlag, R"({"D":{"id":6}})").code, 8u);
    EXPECT_EQ(lines.all(), std::vector<std::string>{});
}

TEST_F(AffectFlags, AFailedRemovalLeavesTheFlag)
{
    addOne(R"({"id":5,"affect":1})");
    refuse("UPDATE", "Events");
    DebugLines lines;
    const auto event = update(removeAffectFlag, R"({"D":{"id":5}})");
    EXPECT_EQ(event.code, 9u);
    EXPECT_EQ(event.record.get(), nullptr);
    EXPECT_TRUE(isFailure(lines.all(), "remove affect flag error"));
    EXPECT_EQ(flag("5"), "1");
}

TEST_F(AffectFlags, RemovingWithoutTheColumnReturns9)
{
    addOne(R"({"id":5,"affect":1})");
    foreign("ALTER TABLE Events RENAME COLUMN EventsAffect TO Gone");
    DebugLines lines;
    EXPECT_EQ(update(removeAffectFlag, R"({"D":{"id":5}})").code, 9u);
    EXPECT_TRUE(isFailure(lines.all(), "remove affect flag error"));
}

TEST_F(AffectFlags, AFailedReadBackUndoesTheRemoval)
{
    addOne(R"({"id":5,"affect":1})");
    foreign("DROP TABLE Users");
    DebugLines lines;
    const auto event = update(removeAffectFlag, R"({"D":{"id":5}})");
    EXPECT_EQ(event.code, 9u);
    EXPECT_EQ(event.record.get(), nullptr);
    EXPECT_TRUE(isFailure(lines.all(), "get event by id error"));
    EXPECT_EQ(flag("5"), "1");
}

TEST_F(AffectFlags, AnEventThatIsGoneAtTheReadBackReturns9AndTheRemovalStays)
{
    addOne(R"({"id":5,"affect":1})");
    foreign("CREATE TRIGGER Vanish AFTER UPDATE ON Events "
            "BEGIN DELETE FROM Events WHERE EventsId = NEW.EventsId; END");
    DebugLines lines;
    const auto event = update(removeAffectFlag, R"({"D":{"id":5}})");
    EXPECT_EQ(event.code, 9u);
    EXPECT_EQ(event.record.get(), nullptr);
    EXPECT_EQ(lines.all(), std::vector<std::string>{});
    EXPECT_EQ(file.number("SELECT count(*) FROM Events"), 0);
}

// ---- Retention ----

class Retention : public AffectFlags
{
protected:
    Rows left() const { return file.rows("SELECT EventsId FROM Events ORDER BY EventsId"); }
};

TEST_F(Retention, OnlyUnmarkedEventsUpToTheDateGo)
{
    // Marks set, not set and absent, each with a time before, at and after the date, and without one.
    ASSERT_EQ(listAdded(batch(R"({"id":11,"affect":1,"time":99},{"id":12,"affect":1,"time":100},)"
                              R"({"id":13,"affect":1,"time":101},{"id":14,"affect":1},)"
                              R"({"id":21,"affect":0,"time":99},{"id":22,"affect":0,"time":100},)"
                              R"({"id":23,"affect":0,"time":101},{"id":24,"affect":0},)"
                              R"({"id":31,"time":99},{"id":32,"time":100},{"id":33,"time":101},{"id":34})"))
                  .code,
              8u);
    EXPECT_EQ(clearEventsBeforeDateExceptAffects(100), 0u);
    EXPECT_EQ(left(), (Rows{Row{"11"}, Row{"12"}, Row{"13"}, Row{"14"}, Row{"23"}, Row{"24"}, Row{"31"}, Row{"32"},
                            Row{"33"}, Row{"34"}}));
}

TEST_F(Retention, AnEventAtTheDateGoes)
{
    addOne(R"({"id":5,"time":100,"affect":0})");
    EXPECT_EQ(clearEventsBeforeDateExceptAffects(99), 0u);
    EXPECT_EQ(left(), (Rows{Row{"5"}}));
    EXPECT_EQ(clearEventsBeforeDateExceptAffects(100), 0u);
    EXPECT_EQ(left(), Rows{});
}

TEST_F(Retention, DatesAreComparedAsUnsignedNumbers)
{
    addOne(R"({"id":1,"time":0,"affect":0})");
    addOne(R"({"id":2,"time":9,"affect":0})");
    addOne(R"({"id":3,"time":2147483648,"affect":0})");
    addOne(R"({"id":4,"time":4294967295,"affect":0})");
    EXPECT_EQ(clearEventsBeforeDateExceptAffects(0), 0u);
    EXPECT_EQ(left(), (Rows{Row{"2"}, Row{"3"}, Row{"4"}}));
    EXPECT_EQ(clearEventsBeforeDateExceptAffects(10), 0u);
    EXPECT_EQ(left(), (Rows{Row{"3"}, Row{"4"}}));
    EXPECT_EQ(clearEventsBeforeDateExceptAffects(3000000000u), 0u);
    EXPECT_EQ(left(), (Rows{Row{"4"}}));
    EXPECT_EQ(clearEventsBeforeDateExceptAffects(UINT32_MAX), 0u);
    EXPECT_EQ(left(), Rows{});
}

TEST_F(Retention, AMarkedEventGoesOnlyAfterItsFlagIsRemoved)
{
    addOne(R"({"id":5,"time":1,"affect":1})");
    EXPECT_EQ(clearEventsBeforeDateExceptAffects(UINT32_MAX), 0u);
    EXPECT_EQ(left(), (Rows{Row{"5"}}));
    ASSERT_EQ(update(removeAffectFlag, R"({"D":{"id":5}})").code, 0u);
    EXPECT_EQ(clearEventsBeforeDateExceptAffects(UINT32_MAX), 0u);
    EXPECT_EQ(left(), Rows{});
}

TEST_F(Retention, AnEventThatCameWithoutAFlagGoesOnlyAfterItsRemoval)
{
    addOne(R"({"id":5,"time":1})");
    EXPECT_EQ(clearEventsBeforeDateExceptAffects(UINT32_MAX), 0u);
    EXPECT_EQ(left(), (Rows{Row{"5"}}));
    ASSERT_EQ(update(removeAffectFlag, R"({"D":{"id":5}})").code, 0u);
    EXPECT_EQ(clearEventsBeforeDateExceptAffects(UINT32_MAX), 0u);
    EXPECT_EQ(left(), Rows{});
}

TEST_F(Retention, AFlagOfTrueIsNoMark)
{
    addOne(R"({"id":5,"time":1,"affect":true})");
    EXPECT_EQ(clearEventsBeforeDateExceptAffects(1), 0u);
    EXPECT_EQ(left(), Rows{});
}

TEST_F(Retention, AMarkedEventThatComesAgainWithoutItsFlagStays)
{
    addOne(R"({"id":5,"time":1,"affect":1})");
    addOne(R"({"id":5,"time":1})");
    EXPECT_EQ(clearEventsBeforeDateExceptAffects(1), 0u);
    EXPECT_EQ(left(), (Rows{Row{"5"}}));
}

TEST_F(Retention, TheDeviceMakesNoDifference)
{
    ASSERT_EQ(send(addDevice, R"({"D":{"id":10}})"), 0u);
    addOne(R"({"id":1,"time":1,"affect":0,"device":10})");
    addOne(R"({"id":2,"time":1,"affect":0,"device":11})");
    addOne(R"({"id":3,"time":1,"affect":0})");
    EXPECT_EQ(clearEventsBeforeDateExceptAffects(1), 0u);
    EXPECT_EQ(left(), Rows{});
    EXPECT_EQ(file.number("SELECT count(*) FROM Devices"), 1);
}

TEST_F(Retention, DeletingNothingIsASuccess)
{
    DebugLines lines;
    EXPECT_EQ(clearEventsBeforeDateExceptAffects(0), 0u);
    EXPECT_EQ(clearEventsBeforeDateExceptAffects(UINT32_MAX), 0u);
    addOne(R"({"id":5,"time":10,"affect":0})");
    EXPECT_EQ(clearEventsBeforeDateExceptAffects(9), 0u);
    EXPECT_EQ(left(), (Rows{Row{"5"}}));
    EXPECT_EQ(lines.all(), std::vector<std::string>{});
}

TEST_F(Retention, AFailureLeavesTheEvents)
{
    addOne(R"({"id":1,"time":1,"affect":0})");
    addOne(R"({"id":2,"time":2,"affect":0})");
    foreign("CREATE TRIGGER RefuseSecond BEFORE DELETE ON Events WHEN OLD.EventsId = 2 "
            "BEGIN SELECT RAISE(ABORT, 'refused'); END");
    DebugLines lines;
    EXPECT_EQ(clearEventsBeforeDateExceptAffects(2), 9u);
    EXPECT_TRUE(isFailure(lines.all(), "clear events before date error"));
    EXPECT_EQ(left(), (Rows{Row{"1"}, Row{"2"}}));
}

TEST_F(Retention, WithoutTheTableTheResultIs9)
{
    foreign("DROP TABLE Events");
    DebugLines lines;
    EXPECT_EQ(clearEventsBeforeDateExceptAffects(2), 9u);
    EXPECT_TRUE(isFailure(lines.all(), "clear events before date error"));
}

} // namespace
