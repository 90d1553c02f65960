#pragma once

#include <windows.h>

#include <span>

class CCmdTarget;

// What a handler may have to know of the message that it answers.
struct Message
{
    UINT id;    // WM_...
    WPARAM wParam;
    LPARAM lParam;
};

// One line of a message map: which message, from which control, and the member function that answers it.
struct MessageHandler
{
    UINT first;    // the messages first to last, WM_...
    UINT last;
    UINT control = 0;    // for WM_COMMAND and WM_NOTIFY: the id of the control or command
    UINT code = 0;       // and its notification code
    LRESULT (*call)(CCmdTarget& target, const Message& message);

    bool Answers(const Message& message) const noexcept;
};

// The handlers of one class; what none of them answers goes to the base class's map.
struct MessageMap
{
    const MessageMap* base;
    std::span<const MessageHandler> handlers;

    const MessageHandler* Find(const Message& message) const noexcept;    // null when none answers it
};

// The class and the result of a member function.
template <typename Function>
struct MemberFunction;

template <typename Class_, typename Result_, typename... Arguments>
struct MemberFunction<Result_ (Class_::*)(Arguments...)>
{
    using Class = Class_;
};

template <auto method>
auto& TargetOf(CCmdTarget& target)
{
    return static_cast<typename MemberFunction<decltype(method)>::Class&>(target);
}

// Lines of a message map, each named after the message it is for; `method` is a member function of the class
// that the map belongs to.

// void method(): a button is clicked, or a key stands for it (IDOK, IDCANCEL).
template <auto method>
constexpr MessageHandler OnCommand(UINT control, UINT code = BN_CLICKED)
{
    return {WM_COMMAND, WM_COMMAND, control, code,
            [](CCmdTarget& target, const Message&) -> LRESULT
            {
                (TargetOf<method>(target).*method)();
                return 0;
            }};
}

// LRESULT method(NMHDR& notice): a common control reports something.
template <auto method>
constexpr MessageHandler OnNotify(UINT control, UINT code)
{
    return {WM_NOTIFY, WM_NOTIFY, control, code, [](CCmdTarget& target, const Message& message) -> LRESULT {
                return (TargetOf<method>(target).*method)(*reinterpret_cast<NMHDR*>(message.lParam));
            }};
}

// HBRUSH method(HDC context, HWND control): a control or the dialog itself asks for its colours. The brush
// stays the dialog's.
template <auto method>
constexpr MessageHandler OnCtlColor()
{
    return {WM_CTLCOLORMSGBOX, WM_CTLCOLORSTATIC, 0, 0,
            [](CCmdTarget& target, const Message& message) -> LRESULT
            {
                return reinterpret_cast<LRESULT>((TargetOf<method>(target).*method)(
                    reinterpret_cast<HDC>(message.wParam), reinterpret_cast<HWND>(message.lParam)));
            }};
}

// void method(): the window's close box, or whoever sends WM_CLOSE.
template <auto method>
constexpr MessageHandler OnClose()
{
    return {WM_CLOSE, WM_CLOSE, 0, 0,
            [](CCmdTarget& target, const Message&) -> LRESULT
            {
                (TargetOf<method>(target).*method)();
                return 0;
            }};
}

// LRESULT method(WPARAM, LPARAM): any other message.
template <auto method>
constexpr MessageHandler OnMessage(UINT id)
{
    return {id, id, 0, 0, [](CCmdTarget& target, const Message& message) -> LRESULT {
                return (TargetOf<method>(target).*method)(message.wParam, message.lParam);
            }};
}
