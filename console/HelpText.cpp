#include "console/HelpText.h"

const wchar_t* GetHelpText()
{
    return LR"(tqodr - finds duplicate messages in a mail store and treats them with one action.

  tqodr folders                      show the folder tree with the number of items in each
  tqodr scan [FOLDER...] [OPTIONS]   search the folders named, or every folder, and treat the duplicates
  tqodr --help | --version

What is a duplicate
  Two messages are duplicates of each other when their text, their subject and the sender's e-mail address
  are the same, and whatever --criteria adds. Of such a group the first message stays as it is: the first by
  the order of "tqodr folders", and within a folder by the folder's own order. All others are duplicates.
  Only folders that hold mail are searched.

FOLDER
  A path such as "Inbox/Lists": names below the top folder, "/" between them, in upper or lower case. It means
  that folder and every folder below it; the name of the top folder means them all. Where "A/B" is both a folder
  B in A and a folder named A/B, it means the first; write "A//B" for the second.

Options of tqodr scan
  --exclude FOLDER   leave out this folder and every folder below it; may be given several times
  --span SPAN        look for duplicates only among messages delivered within this time: anytime (as without
                     it), 1d, 2d, 5d, 10d, 20d, 30d, 50d, 75d, 100d or 1y (365 days)
  --criteria LIST    what must be the same besides text, subject and sender's address, separated by commas:
                       sender-name       the sender's name
                       recipient-name    the names of the recipients, To, Cc and Bcc each
                       internet-header   the whole header with which the message came
                       attachments       the names of the attached files
                       send-time         the time of sending, to within five seconds
  --action ACTION    what becomes of the duplicates:
                       report              nothing, they are only listed (as without it)
                       flag                marked with a flag "Duplicate Mail"; the flag can be cleared
                       expire              marked as expired; the time of expiry can be removed
                       copy                copied to the folder of --to; the copies can be deleted
                       move                moved to the folder of --to; they can be moved back
                       delete              moved to Deleted Items; they can be moved back from there
                       delete-permanently  deleted for good: this CANNOT be undone
  --to FOLDER        where copy and move take the duplicates, a folder that holds mail
  --log FILE         save the report as a text file too, in place of an older file of that name
  --quiet            print the closing message and nothing else
  --yes              delete for good without asking; needed where nobody can be asked, as in a scheduled task

While it runs
  A line is printed for each folder in which duplicates of a message lie: folder, subject, number of duplicates.
  Ctrl+C stops the run. During the search nothing has been changed yet; during the action the message in hand is
  finished, and what is done stays done. Delete-permanently asks after the search and before the first deletion;
  an answer other than y or yes stops the run without a change.

Examples
  tqodr scan
  tqodr scan Inbox "Sent Items" --criteria recipient-name,send-time
  tqodr scan --exclude "Deleted Items" --span 30d --action delete
  tqodr scan --action move --to "Inbox/Duplicates" --log report.txt --quiet

Exit codes
  0  done
  1  wrong usage; nothing was done
  2  the mail store cannot be opened
  3  stopped, by Ctrl+C or by an answer
  4  the run was carried out, but its report or log could not be written)";
}
