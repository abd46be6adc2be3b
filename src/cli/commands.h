#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "cli/cli_context.h"
#include "records/record_click.h"

namespace orchidlamp::cli {

// A command gets the words after its name, global options already taken out.
using CommandFn = int (*)(CliContext& context, const std::vector<std::string>& words);

// One row per command: `--help`, `COMMAND --help` and the usage text of a
// malformed command line read their text from here. The manual page
// (packaging/man/orchidlamp-cli.1) is written by hand; tests/cli checks that it
// names every command of this table.
// `summary` must fit one line of the overview; `details` may span lines, each
// ending in "\n"; `example` is a whole command line.
struct Command {
  std::string_view name;
  CommandFn run;
  std::string_view synopsis;
  std::string_view summary;
  std::string_view details;
  std::string_view example;
};

int RunTree(CliContext&, const std::vector<std::string>&);
int RunStatus(CliContext&, const std::vector<std::string>&);
int RunShow(CliContext&, const std::vector<std::string>&);
int RunExport(CliContext&, const std::vector<std::string>&);
int RunMedia(CliContext&, const std::vector<std::string>&);
int RunSplit(CliContext&, const std::vector<std::string>&);
int RunMerge(CliContext&, const std::vector<std::string>&);
int RunSbEdit(CliContext&, const std::vector<std::string>&);
int RunConvert(CliContext&, const std::vector<std::string>&);
int RunMigrate(CliContext&, const std::vector<std::string>&);

inline constexpr Command kCommands[] = {
    {"tree", RunTree, "tree FILE", "print the database tree, one node per line",
     "Depth first: the root, then each database followed by its records. Each line is\n"
     "DEPTH<TAB>KEY<TAB>IMAGE<TAB>TAG<TAB>TEXT, depth 0 for the root, 1 for a database,\n"
     "2 for a record; empty columns stay empty.\n",
     "orchidlamp-cli tree samples/sample.ipd"},
    {"status", RunStatus, "status FILE", "print the status bar's two panels",
     "Two lines: the file name panel, then the record counts per kind.\n",
     "orchidlamp-cli status samples/sample.ipd"},
    {"show", RunShow, "show FILE TAG", "print the decoded members of the record node TAG",
     "One Member=value line per member, in the decoder's order. TAG is the record's tag\n"
     "as `tree` prints it (two offsets joined by a colon). A service-book record prints\n"
     "hrtnet(0)= ... hrtnet(21)=; a record no panel shows prints nothing.\n",
     "orchidlamp-cli --timezone +3 show samples/sample.ipd 235:509"},
    {"export", RunExport, "export FILE (--txt|--csv) --scope record|kind|all [--node TAG]",
     "export records as a text report or CSV beside the backup",
     "--scope record exports the record TAG, --scope kind every record of TAG's database,\n"
     "--scope all the whole tree; --node is required for record and kind. The file\n"
     "OL_Export_ddhhnnss.txt or .csv goes beside FILE, or into --out-dir.\n",
     "orchidlamp-cli --out-dir /tmp export samples/sample.ipd --csv --scope all"},
    {"media", RunMedia, "media FILE (--jpg|--png)", "save embedded JPEG or PNG pictures to the media folder",
     "Prints one saved path per line. Pictures go to the program folder's \"media\"\n"
     "folder, or to DIR/media with --program-dir DIR.\n",
     "orchidlamp-cli --program-dir /tmp media samples/sample.ipd --jpg"},
    {"split", RunSplit, "split FILE OUT [--toggle NODE]...", "write the ticked databases and records to OUT",
     "Every node starts unticked; each --toggle flips NODE and its records, in the\n"
     "order given. NODE is a node key (\"Top\", \"3DBTop\") or a record tag; one\n"
     "that names no node fails (exit 1).\n",
     "orchidlamp-cli split samples/sample.ipd /tmp/sms.ipd --toggle 10DBTop"},
    {"merge", RunMerge, "merge FILE1 FILE2 OUT [--toggle1 NODE]... [--toggle2 NODE]...",
     "merge the ticked databases of two backups into OUT",
     "--toggle1 flips a node of FILE1's tree, --toggle2 one of FILE2's; NODE as for\n"
     "split, an unknown one fails (exit 1).\n",
     "orchidlamp-cli merge first.ipd second.ipd /tmp/merged.ipd --toggle1 Top --toggle2 Top"},
    {"sb-edit", RunSbEdit, "sb-edit FILE TAG [--set N=VALUE]... (--save|--save-all)",
     "edit a service-book record and save it as a new IPD",
     "--set N=VALUE puts VALUE into box hrtnet(N), N from 0 to 21. --save writes the\n"
     "record alone, --save-all with the rest of its database, beside FILE or into\n"
     "--out-dir. A TAG that is no service-book record writes nothing (exit 0).\n",
     "orchidlamp-cli --out-dir /tmp sb-edit samples/sample.ipd 3043:3340 --set 2=Work --save"},
    {"convert", RunConvert, "convert IN OUT --to ipd|bbb-win|bbb-mac", "save the backup as IPD or a desktop backup",
     "IN may be an IPD or a BBB file; --to picks the kind written to OUT: a plain IPD,\n"
     "a Windows desktop backup or a Mac desktop backup.\n",
     "orchidlamp-cli convert samples/sample.ipd /tmp/sample.bbb --to bbb-win"},
    {"migrate", RunMigrate, "migrate FILE OUTDIR [--charset NAME] [--only KIND,...]",
     "write contacts, calendar, messages and more for a new phone",
     "Writes contacts.vcf (vCard 3.0), calendar.ics (iCalendar 2.0), messages.xml and\n"
     "calls.xml (SMS Backup & Restore), memos/NNNN Title.txt, bookmarks.html and\n"
     "autotext.csv into OUTDIR, as UTF-8 with true UTC instants; a kind without records\n"
     "writes no file. Prints NAME<TAB>COUNT per file. --charset names the code page of\n"
     "8-bit text (default windows-1256, or the MigrateCharset setting); --only limits\n"
     "the kinds: contacts, calendar, messages, calls, memos, bookmarks, autotext.\n",
     "orchidlamp-cli migrate samples/sample.ipd /tmp/phone --charset iso-8859-7"},
};

// Opens `path` into the context, printing the failure if it does not load.
// Returns true when the caller may go on. A command that needs no record nodes
// (the counts, the loaded bytes) opens with TreeScope::DatabasesOnly.
bool OpenOrReport(CliContext& context, const std::string& path, int& exitCode,
                  TreeScope scope = TreeScope::Records);

// Opens `path` and clicks the record node whose tag is `tag`, as a user selects
// a record in the window. Returns nullopt (with exitCode set) when either fails.
std::optional<ClickResult> OpenAndClick(CliContext& context, const std::string& path, const std::string& tag,
                                        int& exitCode);

}  // namespace orchidlamp::cli
