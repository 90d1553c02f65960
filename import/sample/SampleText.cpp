#include "import/sample/SampleText.h"

#include <string_view>

namespace
{
constexpr std::string_view subjects[] = {"drawings for review",
                                         "minutes of the meeting",
                                         "budget for the next quarter",
                                         "question about the schedule",
                                         "photos from the site",
                                         "change of supplier",
                                         "test results",
                                         "who can help on Thursday?",
                                         "draft of the report",
                                         "list of open points",
                                         "delivery is late",
                                         "proposal for the workshop",
                                         "access to the shared folder",
                                         "offer received",
                                         "next steps",
                                         "travel plans",
                                         "corrections to the text",
                                         "numbers do not add up",
                                         "thank you",
                                         "short notice",
                                         "contract, second version",
                                         "lunch?",
                                         "spare parts",
                                         "training dates"};

constexpr std::string_view sentences[] = {
    "I have gone through the figures for %P once more and marked what is still open.",
    "The %T arrived on %D, but two of the %N boxes were damaged.",
    "Could you have a look at the %T before %D?",
    "We agreed to move the meeting to %D at %N o'clock.",
    "From what I can see, the %T is about %N percent over the estimate.",
    "Nobody has touched the %T since last week.",
    "Please keep the old %T until the new one is in place.",
    "The people at %P asked for %N more copies.",
    "I will be out of the office on %D; call me if anything burns.",
    "As discussed on the phone, the %T stays as it is for now.",
    "Attached is what I have so far, %N pages without the annex.",
    "Let us not forget that %P has to be finished by %D.",
    "My suggestion: we order %N of them and see how the %T behaves.",
    "It took me a while to find the %T, it was filed under the wrong year.",
    "There are %N answers so far, most of them friendly.",
    "The invoice for the %T is correct, you can pay it.",
    "Has anyone told the customer about %D?",
    "I am not sure that the %T is worth the trouble.",
    "Good news: the %T passed the inspection without remarks.",
    "We still need somebody who can drive the %T to the harbour on %D.",
    "If the weather holds, the %T can be mounted on %D.",
    "The second measurement gave %N, the first one was clearly wrong.",
    "Sorry for the late answer, %D was rather busy.",
    "I have put the %T into the shared folder, version %N."};

constexpr std::string_view things[] = {"pump",      "drawing",    "catalogue",  "crane",     "budget sheet",
                                       "lens",      "contract",   "manual",     "prototype", "survey",
                                       "timetable", "antenna",    "greenhouse", "archive",   "generator",
                                       "brochure",  "sample box", "foundation"};
constexpr std::string_view days[] = {"Monday", "Tuesday",  "Wednesday", "Thursday",
                                     "Friday", "the 12th", "the 3rd",   "the weekend"};
constexpr std::string_view greetings[] = {"Hello,", "Hi all,", "Dear colleagues,", "Good morning,", "Hi,"};
constexpr std::string_view closings[] = {"Best regards,", "Thanks,", "Cheers,", "Kind regards,", "See you,"};

std::string FilledIn(SampleRandom& random, std::string_view sentence, const std::string& project)
{
    std::string text;
    for (size_t index = 0; index < sentence.size(); ++index)
    {
        if (sentence[index] != '%')
        {
            text += sentence[index];
            continue;
        }
        const char slot = sentence[++index];
        if (slot == 'P')
            text += project;
        else if (slot == 'T')
            text += random.PickFrom(things);
        else if (slot == 'D')
            text += random.PickFrom(days);
        else
            text += std::to_string(2 + random.Below(90));
    }
    return text;
}

std::string Wrapped(const std::string& text)
{
    std::string lines;
    size_t column = 0;
    for (size_t at = 0; at < text.size();)
    {
        const size_t end = std::min(text.find(' ', at), text.size());
        if (column > 0)
            lines += column + (end - at) > 71 ? '\n' : ' ';
        column = lines.ends_with('\n') ? end - at : column + end - at + 1;
        lines.append(text, at, end - at);
        at = end + 1;
    }
    return lines;
}
}    // namespace

SamplePerson SampleDevice(std::size_t number)
{
    const std::string name = std::to_string(number + 1);
    return {"Door camera " + name, "camera-" + name + "@devices.example.net"};
}

SamplePerson SampleOwner()
{
    return {"Marta Lindqvist", "marta.lindqvist@example.org"};
}

const std::vector<SamplePerson>& SamplePeople()
{
    static const std::vector<SamplePerson> people = {{"Anna Berg", "anna.berg@example.org"},
                                                     {"Tom\xC3\xA1s Rivera", "tomas.rivera@example.com"},
                                                     {"Priya Nair", "priya.nair@example.net"},
                                                     {"J\xC3\xBCrgen Wei\xC3\x9F", "j.weiss@example.org"},
                                                     {"Chloe Martin", "chloe.martin@example.com"},
                                                     {"Kenji Sato", "sato@example.jp"},
                                                     {"Olga Petrova", "o.petrova@example.net"},
                                                     {"David O'Neill", "david.oneill@example.com"},
                                                     {"Fatima Haddad", "fatima@example.net"},
                                                     {"Lars Holm", "lars.holm@example.org"},
                                                     {"Ines Duarte", "ines.duarte@example.com"},
                                                     {"Wei Chen", "wei.chen@example.net"},
                                                     {"Rosa Conti", "rosa.conti@example.org"},
                                                     {"Peter Novak", "p.novak@example.com"},
                                                     {"Grace Okafor", "grace.okafor@example.net"},
                                                     {"Emil Sandberg", "emil@example.org"},
                                                     {"H\xC3\xA9l\xC3\xA8ne Roy", "helene.roy@example.com"},
                                                     {"Samuel Kim", "samuel.kim@example.net"},
                                                     {"Nadia Ivanova", "nadia@example.org"},
                                                     {"Robert Fisher", "robert.fisher@example.com"}};
    return people;
}

std::string MakeSubject(SampleRandom& random, const std::string& project)
{
    return project + ": " + std::string(random.PickFrom(subjects));
}

std::string MakeParagraph(SampleRandom& random, const std::string& project, size_t count)
{
    std::string text;
    for (size_t sentence = 0; sentence < count; ++sentence)
        text += (text.empty() ? "" : " ") + FilledIn(random, random.PickFrom(sentences), project);
    return Wrapped(text) + "\n";
}

std::string MakeLetter(SampleRandom& random, const std::string& project, const SamplePerson& writer)
{
    std::string text = std::string(random.PickFrom(greetings)) + "\n\n";
    const size_t paragraphs = 1 + random.Below(3);
    for (size_t paragraph = 0; paragraph < paragraphs; ++paragraph)
        text += MakeParagraph(random, project, 2 + random.Below(4)) + "\n";
    return text + std::string(random.PickFrom(closings)) + "\n" +
           writer.address.substr(0, writer.address.find_first_of(".@")) + "\n";
}

ForeignLetter MakeForeignLetter(SampleRandom& random)
{
    const std::string number = std::to_string(1000 + random.Below(9000));
    const ForeignLetter letters[] = {
        {"Angebot Nr. " + number + " f\xC3\xBCr K\xC3\xBChlger\xC3\xA4te",
         "Sehr geehrte Frau Lindqvist,\n\nanbei das gew\xC3\xBCnschte Angebot Nr. " + number +
             ". Der Preis gilt f\xC3\xBCr vier Wochen.\n\nMit freundlichen Gr\xC3\xBC\xC3\x9F"
             "en\n",
         "iso-8859-1", "8bit"},
        {"R\xC3\xA9union d\xC3\xA9plac\xC3\xA9"
         "e, dossier " +
             number,
         "Bonjour,\n\nla r\xC3\xA9union sur le dossier " + number +
             " est d\xC3\xA9plac\xC3\xA9"
             "e \xC3\xA0 jeudi. Prix estim\xC3\xA9 : 300 \xE2\x82\xAC.\n\n\xC3\x80 bient\xC3\xB4t\n",
         "windows-1252", "quoted-printable"},
        {"\xE4\xBC\x9A\xE8\xAD\xB0\xE3\x81\xAE\xE3\x81\x8A\xE7\x9F\xA5\xE3\x82\x89\xE3\x81\x9B " + number,
         "\xE3\x81\x93\xE3\x82\x93\xE3\x81\xAB\xE3\x81\xA1\xE3\x81\xAF\xE3\x80\x82\n\n" + number +
             " \xE3\x81\xAE\xE8\xB3\x87\xE6\x96\x99\xE3\x82\x92\xE9\x80\x81\xE3\x82\x8A\xE3\x81\xBE\xE3\x81"
             "\x99\xE3\x80\x82\n",
         "iso-2022-jp", "7bit"},
        {"\xD0\x9E\xD1\x82\xD1\x87\xD1\x91\xD1\x82 \xE2\x84\x96 " + number,
         "\xD0\x94\xD0\xBE\xD0\xB1\xD1\x80\xD1\x8B\xD0\xB9 "
         "\xD0\xB4\xD0\xB5\xD0\xBD\xD1\x8C!\n\n\xD0\x9E\xD1\x82\xD1\x87\xD1\x91\xD1\x82 " +
             number + " \xD0\xB3\xD0\xBE\xD1\x82\xD0\xBE\xD0\xB2.\n",
         "koi8-r", "base64"},
        {"Zapytanie nr " + number + " \xE2\x80\x93 szczeg\xC3\xB3\xC5\x82y",
         "Dzie\xC5\x84 dobry,\n\nprosz\xC4\x99 o wycen\xC4\x99 zapytania nr " + number +
             ".\n\nPozdrawiam \xF0\x9F\x99\x82\n",
         "utf-8", "base64"}};
    return random.PickFrom(letters);
}

std::string Quoted(const SampleMail& mail)
{
    std::string text =
        "On " + WriteSampleDate(mail.sentAt, mail.zoneHours) + ", " + mail.from.address + " wrote:\n";
    for (size_t at = 0; at < mail.text.size();)
    {
        const size_t end = std::min(mail.text.find('\n', at), mail.text.size());
        const std::string line = mail.text.substr(at, end - at);
        text += (line.empty() || line.starts_with('>') ? ">" : "> ") + line + "\n";
        at = end + 1;
    }
    return text;
}

std::string AsHtml(const std::string& title, const std::string& text)
{
    std::string html = "<html><head><title>" + title +
                       "</title><style>p { margin: 8px }</style></head>\n<body><h1>" + title + "</h1>\n<p>";
    for (size_t index = 0; index < text.size(); ++index)
    {
        if (text[index] == '&')
            html += "&amp;";
        else if (text[index] == '<')
            html += "&lt;";
        else if (text.compare(index, 2, "\n\n") == 0)
            html += "</p>\n<p>";
        else
            html += text[index];
    }
    return html + "</p></body></html>\n";
}
