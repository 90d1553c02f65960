#include "tests/contracts/InterfaceTable.h"

#include <algorithm>
#include <sstream>

namespace
{
constexpr long own = -1000000;    // the id counts the interface's functions from its base

// Reads "Name Name=gp Name=m:id ...": a property that can be read unless the kinds (g, p, gp, m) say
// otherwise, with the id that counts functions unless one is given.
InterfaceTable Table(const wchar_t* library, const wchar_t* name, const wchar_t* iid, int firstSlot,
                     long base, const wchar_t* functions)
{
    InterfaceTable table{library, name, iid, firstSlot, {}};
    std::wistringstream words(functions);
    int slot = firstSlot;
    for (std::wstring word; words >> word;)
    {
        const std::size_t colon = word.find(L':');
        const long given = colon == word.npos ? own : std::stol(word.substr(colon + 1), nullptr, 0);
        word.resize(std::min(colon, word.size()));
        const std::size_t equals = word.find(L'=');
        const std::wstring kinds = equals == word.npos ? L"g" : word.substr(equals + 1);
        const long id = given == own ? base + slot - firstSlot : given;
        for (const wchar_t kind : kinds)
            table.slots.push_back({slot++, static_cast<char>(kind), word.substr(0, equals), id});
    }
    return table;
}
}    // namespace

const std::vector<InterfaceTable>& PublishedInterfaces()
{
    static const std::vector<InterfaceTable> tables = {
        Table(L"Extensibility.tlb", L"_IDTExtensibility2", L"{B65AD801-ABAF-11D0-BB8B-00A0C90F2744}", 7, 0,
              L"OnConnection=m:1 OnDisconnection=m:2 OnAddInsUpdate=m:3 OnStartupComplete=m:4 "
              L"OnBeginShutdown=m:5"),
        Table(L"Outlook.tlb", L"_Application", L"{00063001-0000-0000-C000-000000000046}", 7, 0,
              L"Application:0xF000 Class:0xF00A Session:0xF00B Parent:0xF001 Assistant:0x114 Name:0x3001 "
              L"Version:0x116 ActiveExplorer=m:0x111 ActiveInspector=m:0x112 CreateItem=m:0x10A "
              L"CreateItemFromTemplate=m:0x10B CreateObject=m:0x115 GetNamespace=m:0x110 Quit=m:0x113 "
              L"COMAddIns:0x118"),
        Table(L"Outlook.tlb", L"_Explorer", L"{00063003-0000-0000-C000-000000000046}", 7, 0,
              L"Application:0xF000 Class:0xF00A Session:0xF00B Parent:0xF001 CommandBars:0x100 "
              L"CurrentFolder=gp:0x101 Close=m:0x103 Display=m:0x104 Caption:0x111"),
        Table(L"Office.tlb", L"_IMsoDispObj", L"{000C0300-0000-0000-C000-000000000046}", 7, 0x60020000,
              L"Application Creator"),
        Table(L"Office.tlb", L"IAccessible", L"{618736E0-3C3D-11CF-810C-00AA00389B71}", 7, 0,
              L"accParent:-5000 accChildCount:-5001 accChild:-5002 accName:-5003 accValue:-5004 "
              L"accDescription:-5005 accRole:-5006 accState:-5007 accHelp:-5008 accHelpTopic:-5009 "
              L"accKeyboardShortcut:-5010 accFocus:-5011 accSelection:-5012 accDefaultAction:-5013 "
              L"accSelect=m:-5014 accLocation=m:-5015 accNavigate=m:-5016 accHitTest=m:-5017 "
              L"accDoDefaultAction=m:-5018 accName=p:-5003 accValue=p:-5004"),
        Table(L"Office.tlb", L"_IMsoOleAccDispObj", L"{000C0301-0000-0000-C000-000000000046}", 28, 0x60030000,
              L"Application Creator"),
        Table(L"Office.tlb", L"_CommandBars", L"{000C0302-0000-0000-C000-000000000046}", 9, 0x60030000,
              L"ActionControl ActiveMenuBar Add=m Count DisplayTooltips=gp DisplayKeysInTooltips=gp "
              L"FindControl=m "
              L"Item:0 LargeButtons=gp MenuAnimationStyle=gp _NewEnum:-4 Parent ReleaseFocus=m"),
        Table(L"Office.tlb", L"CommandBar", L"{000C0304-0000-0000-C000-000000000046}", 30, 0x60040000,
              L"BuiltIn Context=gp Controls Delete=m Enabled=gp FindControl=m Height=gp Index InstanceId "
              L"Left=gp "
              L"Name=gp NameLocal=gp Parent Position=gp RowIndex=gp Protection=gp Reset=m ShowPopup=m Top=gp "
              L"Type "
              L"Visible=gp Width=gp AdaptiveMenu=gp"),
        Table(L"Office.tlb", L"CommandBarControls", L"{000C0306-0000-0000-C000-000000000046}", 9, 0x60030000,
              L"Add=m Count Item:0 _NewEnum:-4 Parent"),
        Table(
            L"Office.tlb", L"CommandBarControl", L"{000C0308-0000-0000-C000-000000000046}", 30, 0x60040000,
            L"BeginGroup=gp BuiltIn Caption=gp Control Copy=m Delete=m DescriptionText=gp Enabled=gp "
            L"Execute=m "
            L"Height=gp HelpContextId=gp HelpFile=gp Id Index InstanceId Move=m Left OLEUsage=gp OnAction=gp "
            L"Parent "
            L"Parameter=gp Priority=gp Reset=m SetFocus=m Tag=gp TooltipText=gp Top Type Visible=gp Width=gp "
            L"IsPriorityDropped Reserved1=m Reserved2=m Reserved3=m Reserved4=m Reserved5=m Reserved6=m "
            L"Reserved7=m"),
        Table(L"Office.tlb", L"CommandBarPopup", L"{000C030A-0000-0000-C000-000000000046}", 83, 0x60050000,
              L"CommandBar Controls OLEMenuGroup=gp"),
        Table(L"Office.tlb", L"_CommandBarButton", L"{000C030E-0000-0000-C000-000000000046}", 83, 0x60050000,
              L"BuiltInFace=gp CopyFace=m FaceId=gp PasteFace=m ShortcutText=gp State=gp Style=gp "
              L"HyperlinkType=gp"),
    };
    return tables;
}
