#include "console/CommandLine.h"

#include "console/Text.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <span>
#include <string_view>

namespace
{
struct SpanWord
{
    const wchar_t* text;
    int index;
};

constexpr SpanWord timeSpans[] = {
    {L"anytime", timeSpanAnytime},
    {L"1d", 0},
    {L"2d", 1},
    {L"5d", 2},
    {L"10d", 3},
    {L"20d", 4},
    {L"30d", 5},
    {L"50d", 6},
    {L"75d", 7},
    {L"100d", 8},
    {L"1y", 9},
};

struct ActionWord
{
    const wchar_t* text;
    std::optional<DuplicateAction> action;
};

constexpr ActionWord actions[] = {
    {L"report", std::nullopt},
    {L"flag", DuplicateAction::markWithFlag},
    {L"expire", DuplicateAction::markAsExpired},
    {L"copy", DuplicateAction::copyToFolder},
    {L"move", DuplicateAction::moveToFolder},
    {L"delete", DuplicateAction::moveToDeletedItems},
    {L"delete-permanently", DuplicateAction::deletePermanently},
};

struct Criterion
{
    const wchar_t* text;
    bool ScanOptions::*flag;
};

constexpr Criterion criteria[] = {
    {L"sender-name", &ScanOptions::senderName},
    {L"recipient-name", &ScanOptions::recipientName},
    {L"internet-header", &ScanOptions::internetHeader},
    {L"attachments", &ScanOptions::attachments},
    {L"send-time", &ScanOptions::sendTime},
};

template <typename Entry>
const Entry* FindWord(std::span<const Entry> entries, std::wstring_view text)
{
    const auto found = std::ranges::find_if(entries, [text](const Entry& entry)
                                            { return EqualIgnoringCase(entry.text, text); });
    return found == entries.end() ? nullptr : &*found;
}

template <typename Entry>
std::wstring ListWords(std::span<const Entry> entries)
{
    std::vector<std::wstring> texts;
    std::ranges::transform(entries, std::back_inserter(texts), [](const Entry& entry) { return entry.text; });
    return JoinAlternatives(texts);
}

void SetTimeSpan(ScanOptions& options, const std::wstring& value)
{
    const SpanWord* span = FindWord<SpanWord>(timeSpans, value);
    if (!span)
        throw UsageError(Quoted(value) + L" is no time span: --span takes " + ListWords<SpanWord>(timeSpans));
    options.timeSpan = span->index;
}

void SetCriterion(ScanOptions& options, const std::wstring& name)
{
    const Criterion* criterion = FindWord<Criterion>(criteria, name);
    if (!criterion)
    {
        throw UsageError(Quoted(name) + L" is no criterion: --criteria takes " +
                         ListWords<Criterion>(criteria) + L", several of them separated by commas");
    }
    options.*criterion->flag = true;
}

void SetCriteria(ScanOptions& options, const std::wstring& value)
{
    std::size_t start = 0;
    for (;;)
    {
        const std::size_t comma = value.find(L',', start);
        SetCriterion(options, value.substr(start, comma - start));
        if (comma == std::wstring::npos)
            return;
        start = comma + 1;
    }
}

void SetAction(ScanOptions& options, const std::wstring& value)
{
    const ActionWord* chosen = FindWord<ActionWord>(actions, value);
    if (!chosen)
        throw UsageError(Quoted(value) + L" is no action: --action takes " + ListWords<ActionWord>(actions));
    options.action = chosen->action;
}

struct OptionRule
{
    const wchar_t* text;
    const wchar_t* valueName;    // null: the option stands alone
    bool repeatable;
    void (*apply)(ScanOptions& options, const std::wstring& value);
};

constexpr OptionRule scanRules[] = {
    {L"--span", L"SPAN", false, SetTimeSpan},
    {L"--criteria", L"LIST", false, SetCriteria},
    {L"--action", L"ACTION", false, SetAction},
    {L"--to", L"FOLDER", false, [](ScanOptions& o, const std::wstring& value) { o.destination = value; }},
    {L"--exclude", L"FOLDER", true,
     [](ScanOptions& o, const std::wstring& value) { o.excluded.push_back(value); }},
    {L"--log", L"FILE", false, [](ScanOptions& o, const std::wstring& value) { o.logFile = value; }},
    {L"--quiet", nullptr, false, [](ScanOptions& o, const std::wstring&) { o.quiet = true; }},
    {L"--yes", nullptr, false, [](ScanOptions& o, const std::wstring&) { o.yes = true; }},
};

bool IsHelp(const std::wstring& word)
{
    return word == L"--help" || word == L"-h" || word == L"/?";
}

bool IsOption(const std::wstring& word)
{
    return word.size() > 1 && word[0] == L'-';
}

// Walks the words once, from left to right.
class Parser
{
public:
    explicit Parser(const std::vector<std::wstring>& words) : words(words) {}

    Command Run()
    {
        if (HasOption(IsHelp))
            return {.task = Task::help, .scan = {}};
        if (HasOption([](const std::wstring& word) { return word == L"--version"; }))
            return {.task = Task::version, .scan = {}};
        ReadWords();
        CheckTask();
        if (command.task == Task::scan)
            CheckScan();
        return std::move(command);
    }

private:
    template <typename Predicate>
    bool HasOption(Predicate predicate) const
    {
        return std::any_of(words.begin(), std::ranges::find(words, L"--"), predicate);
    }

    void ReadWords()
    {
        bool optionsEnded = false;
        while (next < words.size())
        {
            const std::wstring& word = words[next++];
            if (!optionsEnded && word == L"--")
                optionsEnded = true;
            else if (!optionsEnded && IsOption(word))
                ReadOption(word);
            else
                ReadPlainWord(word);
        }
    }

    void ReadPlainWord(const std::wstring& word)
    {
        if (hasTask)
        {
            command.scan.folders.push_back(word);
            return;
        }
        if (word != L"folders" && word != L"scan")
            throw UsageError(Quoted(word) +
                             L" is no command: use \"tqodr folders\" or \"tqodr scan [FOLDER...]\"");
        command.task = word == L"scan" ? Task::scan : Task::folders;
        hasTask = true;
    }

    void ReadOption(const std::wstring& word)
    {
        const std::size_t equals = word.find(L'=');
        const std::wstring name = word.substr(0, equals);
        const OptionRule* rule = FindRule(name);
        if (!rule->repeatable && std::ranges::find(seen, rule) != seen.end())
            throw UsageError(name + L" stands there twice: give it once");
        seen.push_back(rule);
        rule->apply(command.scan,
                    equals == std::wstring::npos ? TakeValue(*rule) : SplitValue(*rule, word, equals));
    }

    static const OptionRule* FindRule(const std::wstring& name)
    {
        for (const OptionRule& rule : scanRules)
        {
            if (name == rule.text)
                return &rule;
        }
        throw UsageError(Quoted(name) + L" is no option: \"tqodr scan\" takes " +
                         ListWords<OptionRule>(scanRules) + L"; a folder of that name stands behind \"--\"");
    }

    std::wstring TakeValue(const OptionRule& rule)
    {
        if (!rule.valueName)
            return {};
        // What looks like the next option is not taken for a value that was forgotten.
        if (next == words.size() || words[next].empty() || words[next].starts_with(L"--"))
            throw MissingValue(rule);
        return words[next++];
    }

    static std::wstring SplitValue(const OptionRule& rule, const std::wstring& word, std::size_t equals)
    {
        if (!rule.valueName)
            throw UsageError(std::wstring(rule.text) + L" takes no value: write " + rule.text);
        if (equals + 1 == word.size())
            throw MissingValue(rule);
        return word.substr(equals + 1);
    }

    static UsageError MissingValue(const OptionRule& rule)
    {
        return UsageError(std::wstring(rule.text) + L" lacks its value: write " + rule.text + L" " +
                          rule.valueName);
    }

    void CheckTask() const
    {
        if (!hasTask)
            throw UsageError(
                L"no command: use \"tqodr folders\" or \"tqodr scan [FOLDER...]\", or \"tqodr --help\"");
        if (command.task != Task::folders)
            return;
        if (!seen.empty())
            throw UsageError(std::wstring(seen.front()->text) +
                             L" belongs to \"tqodr scan\": write \"tqodr folders\" alone");
        if (!command.scan.folders.empty())
        {
            throw UsageError(L"\"tqodr folders\" shows the whole tree and takes no " +
                             Quoted(command.scan.folders.front()) + L": write \"tqodr folders\" alone");
        }
    }

    void CheckScan() const
    {
        const ScanOptions& scan = command.scan;
        const bool needsFolder =
            scan.action == DuplicateAction::copyToFolder || scan.action == DuplicateAction::moveToFolder;
        if (needsFolder && scan.destination.empty())
        {
            const std::wstring verb = scan.action == DuplicateAction::copyToFolder ? L"copy" : L"move";
            throw UsageError(L"--action " + verb + L" lacks the folder to " + verb + L" to: add --to FOLDER");
        }
        if (!needsFolder && !scan.destination.empty())
            throw UsageError(L"--to names the folder of --action copy and --action move: add one of them or "
                             L"leave --to out");
    }

    const std::vector<std::wstring>& words;
    std::size_t next = 0;
    bool hasTask = false;
    std::vector<const OptionRule*> seen;
    Command command;
};
}    // namespace

Command ParseCommandLine(const std::vector<std::wstring>& words)
{
    return Parser(words).Run();
}
