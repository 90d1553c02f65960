#include "win/MessageMap.h"

#include "win/CmdTarget.h"

#include <windows.h>

#include <commctrl.h>

#include <gtest/gtest.h>

#include <string>

namespace
{
class CBase : public CCmdTarget
{
public:
    const MessageMap& GetMessageMap() const override
    {
        static constexpr MessageHandler handlers[] = {
            OnCommand<&CBase::OnFirst>(10),
            OnCommand<&CBase::OnSecond>(20),
            OnNotify<&CBase::OnChanged>(30, NM_RELEASEDCAPTURE),
            OnCtlColor<&CBase::Colour>(),
            OnClose<&CBase::OnCloseBox>(),
            OnMessage<&CBase::OnUser>(WM_USER),
        };
        static const MessageMap map{&CCmdTarget::GetMessageMap(), handlers};
        return map;
    }

    std::string called;

protected:
    void OnFirst() { called += "base first;"; }
    void OnSecond() { called += "base second;"; }
    LRESULT OnChanged(NMHDR& notice)
    {
        called += "changed " + std::to_string(notice.idFrom) + ";";
        return 7;
    }
    HBRUSH Colour(HDC, HWND)
    {
        called += "colour;";
        return reinterpret_cast<HBRUSH>(8);
    }
    void OnCloseBox() { called += "close;"; }
    LRESULT OnUser(WPARAM wParam, LPARAM lParam) { return static_cast<LRESULT>(wParam) + lParam; }
};

class CDerived : public CBase
{
public:
    const MessageMap& GetMessageMap() const override
    {
        static constexpr MessageHandler handlers[] = {OnCommand<&CDerived::OnOwnFirst>(10)};
        static const MessageMap map{&CBase::GetMessageMap(), handlers};
        return map;
    }

private:
    void OnOwnFirst() { called += "derived first;"; }
};

// What the target answers, or -1 when no line of its map is for the message.
LRESULT Deliver(CCmdTarget& target, const Message& message)
{
    const MessageHandler* handler = target.GetMessageMap().Find(message);
    return handler ? handler->call(target, message) : -1;
}

Message Command(WORD control, WORD code = BN_CLICKED)
{
    return {WM_COMMAND, static_cast<WPARAM>(MAKELONG(control, code)), 0};
}

TEST(MessageMap, AnswersACommandByItsControl)
{
    CBase target;

    Deliver(target, Command(20));

    EXPECT_EQ(target.called, "base second;");
}

TEST(MessageMap, PrefersTheLineOfTheMostDerivedClass)
{
    CDerived target;

    Deliver(target, Command(10));
    Deliver(target, Command(20));

    EXPECT_EQ(target.called, "derived first;base second;");
}

TEST(MessageMap, LeavesOtherNotificationsOfTheSameControlAlone)
{
    CBase target;

    EXPECT_EQ(Deliver(target, Command(10, BN_SETFOCUS)), -1);
    EXPECT_EQ(Deliver(target, Command(11)), -1);
}

TEST(MessageMap, AnswersANoticeByControlAndCodeWithTheHandlersResult)
{
    CBase target;
    NMHDR notice{nullptr, 30, static_cast<UINT>(NM_RELEASEDCAPTURE)};
    NMHDR other{nullptr, 30, static_cast<UINT>(NM_CLICK)};

    EXPECT_EQ(Deliver(target, {WM_NOTIFY, 30, reinterpret_cast<LPARAM>(&notice)}), 7);
    EXPECT_EQ(Deliver(target, {WM_NOTIFY, 30, reinterpret_cast<LPARAM>(&other)}), -1);
    EXPECT_EQ(target.called, "changed 30;");
}

TEST(MessageMap, AsksOneHandlerForTheColoursOfEveryKindOfControl)
{
    CBase target;

    for (const UINT id :
         {WM_CTLCOLORDLG, WM_CTLCOLORSTATIC, WM_CTLCOLOREDIT, WM_CTLCOLORBTN, WM_CTLCOLORLISTBOX})
        EXPECT_EQ(Deliver(target, {id, 0, 0}), 8) << id;
}

TEST(MessageMap, HandsTheParametersOfOtherMessagesOn)
{
    CBase target;

    EXPECT_EQ(Deliver(target, {WM_USER, 3, 4}), 7);
    EXPECT_EQ(Deliver(target, {WM_USER + 1, 3, 4}), -1);
}
}    // namespace
