#include "records/decoders.h"
#include "records/field_text.h"

namespace orchidlamp {
namespace {

constexpr int kFirstName = 32;
constexpr int kWideFirstName = 160;
constexpr int kPhoto = 77;

constexpr FieldRoute kClean = FieldRoute::Clean;
constexpr FieldRoute kPaired = FieldRoute::Paired;

// The UTF-16 form of a paired member is its code + 128. First and last name
// share one code and are read apart; Reserved is never filled.
constexpr std::array<MemberSpec, 35> kMembers = {{
    {"Title", "Title", false, kPaired, 55, 183},
    {"FirstName", "First Name"},
    {"LastName", "Last Name"},
    {"Company", "Company", false, kPaired, 33, 161},
    {"Job", "Job", false, kPaired, 42, 170},
    {"Email", "Email", false, kClean, 1},
    {"WorkPhone1", "Work Phone 1", false, kClean, 6},
    {"WorkPhone2", "Work Phone 2", false, kClean, 16},
    {"HomePhone1", "Home Phone 1", false, kClean, 7},
    {"HomePhone2", "Home Phone 2", false, kClean, 17},
    {"Mobile", "Mobile", false, kClean, 8},
    {"Pager", "Pager", false, kClean, 9},
    {"Fax", "Fax", false, kClean, 3},
    {"Other", "Other", false, kClean, 18},
    {"Pin", "PIN", false, kClean, 10},
    {"WorkAddress1", "Work Address 1", true, kPaired, 35, 163},
    {"WorkAddress2", "Work Address 2", true, kPaired, 36, 164},
    {"WorkCity", "Work City", false, kPaired, 38, 166},
    {"WorkState", "Work State", false, kPaired, 39, 167},
    {"WorkZip", "Work ZIP", false, kClean, 40},
    {"WorkCountry", "Work Country", false, kPaired, 41, 169},
    {"HomeAddress1", "Home Address 1", true, kPaired, 61, 189},
    {"HomeAddress2", "Home Address 2", true, kPaired, 62, 190},
    {"HomeCity", "Home City", false, kPaired, 69, 197},
    {"HomeState", "Home State", false, kPaired, 70, 198},
    {"HomeZip", "Home ZIP", false, kClean, 71},
    {"HomeCountry", "Home Country", false, kPaired, 72, 200},
    {"Birthday", "Birthday", false, kClean, 82},
    {"Anniversary", "Anniversary", false, kClean, 83},
    {"Category", "Category", false, kClean, 59},
    {"WebPage", "Web Page", false, kClean, 54},
    {"Field99", "", false, kClean, 99},
    {"Reserved", ""},
    {"Notes", "Notes", true, kPaired, 64, 192},
    {"PhotoFile", ""},
}};

bool IsJpeg(ByteView data) { return data.size() >= 3 && data[0] == 0xFF && data[1] == 0xD8 && data[2] == 0xFF; }

static_assert(kMembers.size() <= MemberValues::kMostMembers);

void Finish(ByteView, const FieldList& fields, const DecodeContext& context, MemberValues& m) {
  constexpr std::size_t kFirst = MemberIndex(kMembers, "FirstName");
  constexpr std::size_t kLast = MemberIndex(kMembers, "LastName");
  // The names take the UTF-16 form when its code holds data.
  if (const ByteView wide = fields.Find(kWideFirstName); !wide.empty()) {
    m.Set(kFirst, [&](std::string& text) { AppendUtf16AfterLead(text, wide, false); });
    m.Set(kLast, [&](std::string& text) { AppendUtf16AfterLead(text, fields.FindFollowing(kWideFirstName), false); });
  } else {
    m.Set(kFirst, [&](std::string& text) { AppendClean(text, fields.Find(kFirstName), false); });
    m.Set(kLast, [&](std::string& text) { AppendClean(text, fields.FindFollowing(kFirstName), false); });
  }
  const ByteView photo = fields.Find(kPhoto);
  if (IsJpeg(photo) && context.pictures && *context.pictures)
    m.Set(MemberIndex(kMembers, "PhotoFile"), (*context.pictures)(photo, context.pictureNumber));
}

RecordLabel Label(ByteView, const FieldList& fields) {
  RecordLabel label;
  const ByteView wide = fields.Find(kWideFirstName);
  // The label reads the UTF-16 name the 8-bit way: Latin names lose their zero
  // bytes and still read right.
  if (!wide.empty()) {
    AppendClean(label.text, ClippedSub(wide, 1, wide.size()), false);
  } else {
    AppendClean(label.text, fields.Find(kFirstName), false);
    label.text += ' ';
    AppendClean(label.text, fields.FindFollowing(kFirstName), false);
  }
  return label;
}

// PIN comes before Other, and home before work, in the export.
constexpr auto kExportOrder = MemberIndices(
    kMembers, {"Title",        "FirstName",    "LastName",    "Company",      "Job",          "Email",
               "WorkPhone1",   "WorkPhone2",   "HomePhone1",  "HomePhone2",   "Mobile",       "Pager",
               "Fax",          "Pin",          "Other",       "HomeAddress1", "HomeAddress2", "HomeCity",
               "HomeState",    "HomeZip",      "HomeCountry", "WorkAddress1", "WorkAddress2", "WorkCity",
               "WorkState",    "WorkZip",      "WorkCountry", "Birthday",     "Anniversary",  "Category",
               "WebPage",      "Notes"});
constexpr auto kIdentity = MemberIndices(kMembers, {"FirstName", "LastName"});

constexpr std::array<FrameBox, 10> kNameTab = {{{"Title"}, {"FirstName"}, {"LastName"}, {"Company"}, {"Job"},
                                                {"Email"}, {"Category"}, {"WebPage"}, {"Birthday"},
                                                {"Anniversary"}}};
constexpr std::array<FrameBox, 9> kPhonesTab = {{{"WorkPhone1"}, {"WorkPhone2"}, {"HomePhone1"}, {"HomePhone2"},
                                                 {"Mobile"}, {"Pager"}, {"Fax"}, {"Other"}, {"Pin"}}};
constexpr std::array<FrameBox, 6> kWorkTab = {{{"WorkAddress1", {}, {}, true}, {"WorkAddress2", {}, {}, true},
                                               {"WorkCity"}, {"WorkState"}, {"WorkZip"}, {"WorkCountry"}}};
constexpr std::array<FrameBox, 6> kHomeTab = {{{"HomeAddress1", {}, {}, true}, {"HomeAddress2", {}, {}, true},
                                               {"HomeCity"}, {"HomeState"}, {"HomeZip"}, {"HomeCountry"}}};
constexpr std::array<FrameBox, 4> kNotesTab = {
    {{"Notes", {}, {}, true}, {"Field99", {}, "Field 99"}, {"Reserved", {}, "Reserved"}, {"PhotoFile", {}, "Photo"}}};
constexpr std::array<FrameTab, 5> kTabs = {{{"Name", kNameTab},
                                            {"Phones", kPhonesTab},
                                            {"Work Address", kWorkTab},
                                            {"Home Address", kHomeTab},
                                            {"Notes", kNotesTab, true}}};
constexpr FrameLayout kFrame{"Contacts", "Contacts", {}, kTabs, "ctab", "PhotoFile"};
static_assert(FrameShowsEachMemberOnce(kMembers, kFrame));

}  // namespace

const RecordForm kContactForm = {
    kMembers,
    {"Export Selected Address", "Export All Addresses", "Address Book", "Address Book", "Address Book",
     "                           Address Book", kExportOrder, kIdentity},
    &kFrame};

const RecordDecoder kContactDecoder = {RecordFields, Finish, Label};
const RecordDecoder kNestedContactDecoder = {[](ByteView body) { return NestedFields(body, 0); }, Finish, Label};

}  // namespace orchidlamp
