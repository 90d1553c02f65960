#include "quorvex/AutomationDate.h"
#include "tests/quorvex/SessionFixture.h"

#include <mapicode.h>

namespace
{
class MailItem : public SessionFixture
{
protected:
    MailItem() { LogOn(); }

    std::wstring Text(const ComPtr<IDispatch>& item, DISPID id)
    {
        return automation::TextOf(automation::Get(item.Get(), id));
    }
    _variant_t Field(const ComPtr<IDispatch>& item, ULONG tag)
    {
        return automation::Get(item.Get(), dispid::mailItem::field,
                               {_variant_t(static_cast<long>(tag), VT_I4)});
    }
    automation::Outcome Call(const ComPtr<IDispatch>& item, DISPID id, std::vector<_variant_t> arguments)
    {
        return automation::Invoke(item.Get(), id, DISPATCH_METHOD, std::move(arguments));
    }
};

TEST_F(MailItem, TellsItsTexts)
{
    fake::AddStoredMessage(*inbox, {{PR_SUBJECT_W, L"Minutes"},
                                    {PR_BODY_W, L"We met."},
                                    {PR_SENDER_EMAIL_ADDRESS_W, L"ann@example.org"},
                                    {PR_SENDER_NAME_W, L"Ann"}});
    const auto item = ItemOfInbox(1);

    EXPECT_EQ(Text(item, dispid::mailItem::subject), L"Minutes");
    EXPECT_EQ(Text(item, dispid::mailItem::bodyText), L"We met.");
    EXPECT_EQ(Text(item, dispid::mailItem::senderEmail), L"ann@example.org");
    EXPECT_EQ(Text(item, dispid::mailItem::senderName), L"Ann");
}

TEST_F(MailItem, ReadsATextThatIsMissingAsEmpty)
{
    fake::AddStoredMessage(*inbox, {});
    const auto item = ItemOfInbox(1);

    EXPECT_EQ(Text(item, dispid::mailItem::subject), L"");
    EXPECT_EQ(Text(item, dispid::mailItem::bodyText), L"");
}

TEST_F(MailItem, ReadsTextsThatAreTooLongForOneCallThroughAStream)
{
    const std::wstring body(70'000, L'\x00E4');
    const auto message = fake::AddStoredMessage(*inbox, {{PR_BODY_W, body}});
    message->habits.longValueAt = 1000;

    EXPECT_EQ(Text(ItemOfInbox(1), dispid::mailItem::bodyText), body);
}

TEST_F(MailItem, ReadsEverythingThroughStreamsWhenOneCallGivesNothing)
{
    const auto message = fake::AddStoredMessage(*inbox, {{PR_BODY_W, L"We met."}});
    message->habits.getProps = MAPI_E_NOT_ENOUGH_MEMORY;

    EXPECT_EQ(Text(ItemOfInbox(1), dispid::mailItem::bodyText), L"We met.");
}

TEST_F(MailItem, FailsRatherThanShowATextItMayNotRead)
{
    const auto message = fake::AddStoredMessage(*inbox, {{PR_BODY_W, L"We met."}});
    message->habits.errorProps[PR_BODY_W] = MAPI_E_NO_ACCESS;

    const auto outcome =
        automation::Invoke(ItemOfInbox(1).Get(), dispid::mailItem::bodyText, DISPATCH_PROPERTYGET);

    EXPECT_EQ(outcome.code, MAPI_E_NO_ACCESS);
}

TEST_F(MailItem, IsReadByOneCallForAllItsTexts)
{
    fake::AddStoredMessage(*inbox, {{PR_SUBJECT_W, L"Minutes"}, {PR_BODY_W, L"We met."}});
    const auto item = ItemOfInbox(1);
    const std::size_t before = store->counters->getPropsCalls;

    for (const DISPID id : {dispid::mailItem::subject, dispid::mailItem::bodyText,
                            dispid::mailItem::senderEmail, dispid::mailItem::senderName})
        Text(item, id);
    Field(item, PR_TRANSPORT_MESSAGE_HEADERS_A);

    EXPECT_EQ(store->counters->getPropsCalls, before + 1);
}

TEST_F(MailItem, IsNotOpenedForItsEntryId)
{
    const auto message = fake::AddStoredMessage(*inbox, {});
    const std::size_t before = store->counters->messagesOpened;

    EXPECT_EQ(Text(ItemOfInbox(1), dispid::mailItem::entryId), ToHex(message->entryId));

    EXPECT_EQ(store->counters->messagesOpened, before);
}

TEST_F(MailItem, TellsItsLongTermIdWhereTheTableGaveAShortTermOne)
{
    const auto message = fake::AddStoredMessage(*inbox, {});
    message->properties[PR_ENTRYID] = fake::Bytes{0, 0, 0, 0, 9, 9, 9};
    message->entryId[0] = MAPI_SHORTTERM;

    EXPECT_EQ(Text(ItemOfInbox(1), dispid::mailItem::entryId), L"00000000090909");
}

TEST_F(MailItem, GivesAFieldOfAnyType)
{
    fake::AddStoredMessage(*inbox, {{PR_MESSAGE_FLAGS, 17},
                                    {PROP_TAG(PT_BOOLEAN, 0x0E1B), true},
                                    {PR_SEARCH_KEY, fake::Bytes{1, 0, 255}},
                                    {PR_MESSAGE_CLASS_W, L"IPM.Note"}});
    const auto item = ItemOfInbox(1);

    EXPECT_EQ(automation::LongOf(Field(item, PR_MESSAGE_FLAGS)), 17);
    EXPECT_EQ(Field(item, PROP_TAG(PT_BOOLEAN, 0x0E1B)).boolVal, VARIANT_TRUE);
    EXPECT_EQ(automation::TextOf(Field(item, PR_MESSAGE_CLASS_A)), L"IPM.Note");
    const _variant_t key = Field(item, PR_SEARCH_KEY);
    ASSERT_EQ(key.vt, VT_ARRAY | VT_UI1);
    EXPECT_EQ(key.parray->rgsabound[0].cElements, 3u);
    EXPECT_EQ(static_cast<std::uint8_t*>(key.parray->pvData)[2], 255);
}

TEST_F(MailItem, GivesAnEmptyFieldForWhatIsMissing)
{
    fake::AddStoredMessage(*inbox, {});

    EXPECT_EQ(Field(ItemOfInbox(1), PR_TRANSPORT_MESSAGE_HEADERS_A).vt, VT_EMPTY);
    EXPECT_EQ(Field(ItemOfInbox(1), PR_MESSAGE_FLAGS).vt, VT_EMPTY);
}

TEST_F(MailItem, LosesNoCharacterOfAFieldAskedForAsEightBitText)
{
    fake::AddStoredMessage(*inbox, {{PR_TRANSPORT_MESSAGE_HEADERS_W, L"Subject: \x4F60\x597D \x0416"}});

    EXPECT_EQ(automation::TextOf(Field(ItemOfInbox(1), PR_TRANSPORT_MESSAGE_HEADERS_A)),
              L"Subject: \x4F60\x597D \x0416");
}

TEST_F(MailItem, TakesATagAboveTheNamedPropertiesInEachNumericForm)
{
    constexpr ULONG tag = PROP_TAG(PT_LONG, 0x8001);
    fake::AddStoredMessage(*inbox, {{tag, 5}});
    const auto item = ItemOfInbox(1);

    for (const _variant_t& form :
         {_variant_t(static_cast<long>(tag), VT_I4), _variant_t(static_cast<double>(tag))})
        EXPECT_EQ(automation::LongOf(automation::Get(item.Get(), dispid::mailItem::field, {form})), 5);
}

TEST_F(MailItem, TellsWhenItWasSentInLocalTime)
{
    FILETIME now{};
    GetSystemTimeAsFileTime(&now);
    const auto ticks = static_cast<std::int64_t>(std::uint64_t{now.dwHighDateTime} << 32 | now.dwLowDateTime);
    fake::AddStoredMessage(*inbox, {{PR_CLIENT_SUBMIT_TIME, fake::FileTime{ticks}}});
    SYSTEMTIME local{};
    GetLocalTime(&local);
    DATE expected = 0;
    SystemTimeToVariantTime(&local, &expected);

    const _variant_t sent = automation::Get(ItemOfInbox(1).Get(), dispid::mailItem::sentTime);

    ASSERT_EQ(sent.vt, VT_DATE);
    EXPECT_NEAR(sent.date, expected, 10.0 / 86'400);
}

TEST_F(MailItem, SaysNoDateWhenItWasNeverSent)
{
    fake::AddStoredMessage(*inbox, {});

    EXPECT_EQ(automation::Get(ItemOfInbox(1).Get(), dispid::mailItem::sentTime).date, noDate);
}

TEST_F(MailItem, FailsRatherThanPassATimeItCouldNotReadForNone)
{
    const auto message = fake::AddStoredMessage(*inbox, {{PR_CLIENT_SUBMIT_TIME, fake::FileTime{1000}}});
    message->habits.errorProps[PR_CLIENT_SUBMIT_TIME] = MAPI_E_NOT_ENOUGH_MEMORY;

    const auto outcome =
        automation::Invoke(ItemOfInbox(1).Get(), dispid::mailItem::sentTime, DISPATCH_PROPERTYGET);

    EXPECT_EQ(outcome.code, MAPI_E_NOT_ENOUGH_MEMORY);
}

TEST_F(MailItem, ListsItsRecipients)
{
    const auto message = fake::AddStoredMessage(*inbox, {});
    message->recipients = {{{PR_RECIPIENT_TYPE, 1}, {PR_DISPLAY_NAME_W, L"Ann"}},
                           {{PR_RECIPIENT_TYPE, 3}, {PR_DISPLAY_NAME_W, L"Bob"}},
                           {{PR_RECIPIENT_TYPE, 2 | static_cast<std::int32_t>(0x10000000)}}};
    const auto recipients =
        automation::ObjectOf(automation::Get(ItemOfInbox(1).Get(), dispid::mailItem::recipients));

    std::vector<std::pair<long, std::wstring>> listed;
    for (long i = 1;
         i <= automation::LongOf(automation::Get(recipients.Get(), dispid::recipientCollection::count)); ++i)
    {
        const auto one =
            automation::ObjectOf(automation::Get(recipients.Get(), dispid::recipientCollection::item, {i}));
        listed.emplace_back(automation::LongOf(automation::Get(one.Get(), dispid::recipient::type)),
                            automation::TextOf(automation::Get(one.Get(), dispid::recipient::name)));
    }

    EXPECT_EQ(listed, (std::vector<std::pair<long, std::wstring>>{{1, L"Ann"}, {3, L"Bob"}, {2, L""}}));
}

TEST_F(MailItem, FailsRatherThanListRecipientsItCouldNotRead)
{
    const auto message = fake::AddStoredMessage(*inbox, {});
    message->recipients = {{{PR_RECIPIENT_TYPE, 1}, {PR_DISPLAY_NAME_W, L"Ann"}}};
    message->recipientTable.errorColumns[PR_RECIPIENT_TYPE] = MAPI_E_NETWORK_ERROR;

    const auto outcome =
        automation::Invoke(ItemOfInbox(1).Get(), dispid::mailItem::recipients, DISPATCH_PROPERTYGET);

    EXPECT_EQ(outcome.code, MAPI_E_NETWORK_ERROR);
}

TEST_F(MailItem, NamesItsAttachmentsByTheBestNameTheyHave)
{
    const std::wstring longName(300, L'n');
    const auto message = fake::AddStoredMessage(*inbox, {});
    message->attachments = {
        {{PR_ATTACH_LONG_FILENAME_W, L"holiday.jpeg"}, {PR_ATTACH_FILENAME_W, L"HOLIDA~1.JPE"}},
        {{PR_ATTACH_FILENAME_W, L"A.TXT"}, {PR_DISPLAY_NAME_W, L"A"}},
        {{PR_DISPLAY_NAME_W, L"Forwarded"}},
        {{PR_ATTACH_LONG_FILENAME_W, longName}},
        {}};
    message->attachmentTable.cutTextAt = 255;
    const auto attachments =
        automation::ObjectOf(automation::Get(ItemOfInbox(1).Get(), dispid::mailItem::attachments));

    std::vector<std::wstring> names;
    for (long i = 1;
         i <= automation::LongOf(automation::Get(attachments.Get(), dispid::attachmentCollection::count));
         ++i)
    {
        const auto one =
            automation::ObjectOf(automation::Get(attachments.Get(), dispid::attachmentCollection::item, {i}));
        names.push_back(automation::TextOf(automation::Get(one.Get(), dispid::attachment::fileName)));
    }

    EXPECT_EQ(names, (std::vector<std::wstring>{L"holiday.jpeg", L"A.TXT", L"Forwarded", longName, L""}));
}

TEST_F(MailItem, IsFlaggedWithATextAndSaved)
{
    const auto message = fake::AddStoredMessage(*inbox, {});
    const auto item = ItemOfInbox(1);

    automation::Put(item.Get(), dispid::mailItem::flagStatus, 2L);
    automation::Put(item.Get(), dispid::mailItem::flagText, L"Duplicate Mail");
    automation::Call(item.Get(), dispid::mailItem::save);

    EXPECT_EQ(std::get<std::int32_t>(message->properties[PROP_TAG(PT_LONG, 0x1090)]), 2);
    EXPECT_EQ(std::get<std::wstring>(message->properties[PROP_TAG(PT_UNICODE, 0x8123)]), L"Duplicate Mail");
    EXPECT_EQ(store->saves, 1u);
}

TEST_F(MailItem, ExpiresAtALocalTime)
{
    const auto message = fake::AddStoredMessage(*inbox, {});
    const FILETIME expected = UtcFromLocalDate(45'000.5);

    automation::Put(ItemOfInbox(1).Get(), dispid::mailItem::expiryTime, _variant_t(45'000.5, VT_DATE));

    const auto ticks = std::get<fake::FileTime>(message->properties[PR_EXPIRY_TIME]).ticks;
    EXPECT_EQ(ticks, static_cast<std::int64_t>(std::uint64_t{expected.dwHighDateTime} << 32 |
                                               expected.dwLowDateTime));
}

TEST_F(MailItem, GoesToDeletedItemsWhenDeleted)
{
    fake::AddStoredMessage(*inbox, {{PR_SUBJECT_W, L"Minutes"}});

    EXPECT_EQ(Call(ItemOfInbox(1), dispid::mailItem::deleteItem, {1L}).result, S_OK);

    EXPECT_TRUE(inbox->messages.empty());
    EXPECT_EQ(deletedItems->messages.size(), 1u);
}

TEST_F(MailItem, StaysInDeletedItemsWhenDeletedThere)
{
    fake::AddStoredMessage(*deletedItems, {});
    const auto items = Items(DeletedItems());
    const auto item = automation::ObjectOf(automation::Call(items.Get(), dispid::itemCollection::item, {1L}));

    EXPECT_EQ(Call(item, dispid::mailItem::deleteItem, {1L}).result, S_OK);

    EXPECT_EQ(deletedItems->messages.size(), 1u);
}

TEST_F(MailItem, IsGoneWhenDeletedForGood)
{
    fake::AddStoredMessage(*inbox, {});

    EXPECT_EQ(Call(ItemOfInbox(1), dispid::mailItem::deleteItem, {0L}).result, S_OK);

    EXPECT_TRUE(inbox->messages.empty());
    EXPECT_TRUE(deletedItems->messages.empty());
}

TEST_F(MailItem, IsNotDeletedForAnyOtherChoice)
{
    fake::AddStoredMessage(*inbox, {});

    EXPECT_EQ(Call(ItemOfInbox(1), dispid::mailItem::deleteItem, {2L}).code, E_INVALIDARG);
    EXPECT_EQ(Call(ItemOfInbox(1), dispid::mailItem::deleteItem, {automation::Missing()}).result,
              DISP_E_TYPEMISMATCH);

    EXPECT_EQ(inbox->messages.size(), 1u);
}

TEST_F(MailItem, IsNotDeletedForGoodWhereDeletedItemsAreMissing)
{
    store->properties.erase(PR_IPM_WASTEBASKET_ENTRYID);
    fake::AddStoredMessage(*inbox, {});

    EXPECT_EQ(Call(ItemOfInbox(1), dispid::mailItem::deleteItem, {1L}).code, MAPI_E_NOT_FOUND);

    EXPECT_EQ(inbox->messages.size(), 1u);
}

TEST_F(MailItem, IsCopiedIntoAFolder)
{
    fake::AddStoredMessage(*inbox, {});

    EXPECT_EQ(Call(ItemOfInbox(1), dispid::mailItem::copyTo, {_variant_t(Archive().Get())}).result, S_OK);

    EXPECT_EQ(inbox->messages.size(), 1u);
    EXPECT_EQ(archive->messages.size(), 1u);
}

TEST_F(MailItem, IsCopiedToAFolderOnly)
{
    fake::AddStoredMessage(*inbox, {});

    EXPECT_EQ(Call(ItemOfInbox(1), dispid::mailItem::copyTo, {_variant_t(session.Get())}).result,
              DISP_E_TYPEMISMATCH);
    EXPECT_EQ(Call(ItemOfInbox(1), dispid::mailItem::copyTo, {L"Archive"}).result, DISP_E_TYPEMISMATCH);
    EXPECT_EQ(
        Call(ItemOfInbox(1), dispid::mailItem::moveTo, {_variant_t(static_cast<IDispatch*>(nullptr))}).result,
        DISP_E_TYPEMISMATCH);
}

TEST_F(MailItem, IsGivenBackFromWhereItWasMovedTo)
{
    fake::AddStoredMessage(*inbox, {{PR_SUBJECT_W, L"Minutes"}});

    const auto moved = automation::ObjectOf(
        Call(ItemOfInbox(1), dispid::mailItem::moveTo, {_variant_t(Archive().Get())}).value);

    EXPECT_TRUE(inbox->messages.empty());
    ASSERT_EQ(archive->messages.size(), 1u);
    EXPECT_EQ(Text(moved, dispid::mailItem::entryId), ToHex(archive->messages.front()->entryId));
    EXPECT_EQ(Text(moved, dispid::mailItem::subject), L"Minutes");
}

TEST_F(MailItem, IsFoundAgainUnderTheNewIdThatAMoveGaveIt)
{
    store->keepsIds = false;
    fake::AddStoredMessage(*archive, {});
    fake::AddStoredMessage(*inbox, {{PR_SUBJECT_W, L"Minutes"}});

    const auto moved = automation::ObjectOf(
        Call(ItemOfInbox(1), dispid::mailItem::moveTo, {_variant_t(Archive().Get())}).value);

    EXPECT_EQ(Text(moved, dispid::mailItem::entryId), ToHex(archive->messages.back()->entryId));
    EXPECT_EQ(Text(moved, dispid::mailItem::subject), L"Minutes");
}

TEST_F(MailItem, CountsAsMovedWhenItDoesNotSayWhereItLiesAfterwards)
{
    const auto message = fake::AddStoredMessage(*inbox, {{PR_SUBJECT_W, L"Minutes"}});
    message->habits.errorProps[PR_PARENT_ENTRYID] = MAPI_E_NO_ACCESS;

    const auto outcome = Call(ItemOfInbox(1), dispid::mailItem::moveTo, {_variant_t(Archive().Get())});

    ASSERT_EQ(outcome.result, S_OK);
    EXPECT_TRUE(inbox->messages.empty());
    EXPECT_EQ(Text(automation::ObjectOf(outcome.value), dispid::mailItem::entryId),
              ToHex(archive->messages.front()->entryId));
}

TEST_F(MailItem, DoesNotCountAsMovedWhenTheStoreLeftItBehind)
{
    fake::AddStoredMessage(*inbox, {});
    store->copyMessages = MAPI_W_PARTIAL_COMPLETION;

    const auto outcome = Call(ItemOfInbox(1), dispid::mailItem::moveTo, {_variant_t(Archive().Get())});

    EXPECT_EQ(outcome.code, MAPI_E_CALL_FAILED);
}

TEST_F(MailItem, ThatWasFoundByItsIdKnowsItsOwnFolder)
{
    const auto message = fake::AddStoredMessage(*archive, {});
    const auto item = automation::ObjectOf(automation::Call(session.Get(), dispid::session::getItemFromId,
                                                            {ToHex(message->entryId).c_str(), L"", 16L}));

    EXPECT_EQ(Call(item, dispid::mailItem::moveTo, {_variant_t(Inbox().Get())}).result, S_OK);

    EXPECT_TRUE(archive->messages.empty());
    EXPECT_EQ(inbox->messages.size(), 1u);
}

TEST_F(MailItem, IsSeenAsMovedByTheNextListing)
{
    fake::AddStoredMessage(*inbox, {});
    const auto item = ItemOfInbox(1);

    Call(item, dispid::mailItem::moveTo, {_variant_t(Archive().Get())});

    EXPECT_EQ(automation::LongOf(automation::Get(Items(Inbox()).Get(), dispid::itemCollection::count)), 0);
    EXPECT_EQ(automation::LongOf(automation::Get(Items(Archive()).Get(), dispid::itemCollection::count)), 1);
}

TEST_F(MailItem, LetsFoldersBeListedAnewAfterAChangeThatFailed)
{
    fake::AddStoredMessage(*inbox, {});
    const auto item = ItemOfInbox(1);
    fake::AddStoredMessage(*inbox, {});    // as a store does that changes something and reports a failure
    store->copyMessages = MAPI_E_CALL_FAILED;

    Call(item, dispid::mailItem::moveTo, {_variant_t(Archive().Get())});

    EXPECT_EQ(automation::LongOf(automation::Get(Items(Inbox()).Get(), dispid::itemCollection::count)), 2);
}
}    // namespace
