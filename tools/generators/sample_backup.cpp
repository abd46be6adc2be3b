#include "generators/sample_backup.h"

#include "support/ipd_builder.h"
#include "generators/record_shapes.h"
#include "generators/tiny_images.h"

namespace orchidlamp::testing {
namespace {

// Databases in the order devices write them: alphabetical.
enum Database : std::uint16_t {
  kAddressBook,
  kAddressBookAll,
  kAutoText,
  kBrowserBookmarks,
  kCalendar,
  kCalendarAll,
  kHandheldAgent,
  kMemos,
  kOptions,
  kPhoneCallLogs,
  kSmsMessages,
  kServiceBook,
  kTasks,
};

constexpr const char* kDatabaseNames[] = {
    "Address Book", "Address Book - All", "AutoText", "Browser Bookmarks", "Calendar",
    "Calendar - All", "Handheld Agent", "Memos", "Options", "Phone Call Logs",
    "SMS Messages", "Service Book", "Tasks",
};

// Handles and unique ids count up from fixed seeds so every record is distinct
// and the bytes never change between runs.
class Ids {
 public:
  std::uint16_t handle() { return handle_++; }
  std::uint32_t uid() { return uid_ += 0x00010307; }

 private:
  std::uint16_t handle_ = 0x0201;
  std::uint32_t uid_ = 0x1B2C0000;
};

Field Plain(std::uint8_t type, std::string_view text) { return {type, Text(text)}; }
Field Wide(std::uint8_t type, std::u16string_view text) { return {type, WideText(text)}; }
Field Minutes(std::uint8_t type, std::uint32_t minutes) { return {type, LE32(minutes)}; }
Field Byte(std::uint8_t type, std::uint8_t value) { return {type, Bytes{value}}; }

void AddContacts(IpdBuilder& b, Ids& ids) {
  b.Add(FieldRecord(kAddressBook,
                    {Plain(32, "Ann"), Plain(32, "Lee"), Plain(55, "Ms."), Plain(33, "Northwind Traders"),
                     Plain(42, "Purchasing Manager"), Plain(1, "ann.lee@northwind.example"),
                     Plain(6, "+1 416 555 0134"), Plain(8, "+1 647 555 0199"), Plain(3, "+1 416 555 0135"),
                     Plain(35, "120 King Street West"), Plain(36, "Suite 400"), Plain(38, "Toronto"),
                     Plain(39, "ON"), Plain(40, "M5H 1J9"), Plain(41, "Canada"), Plain(59, "Business"),
                     Plain(64, "Met at the spring trade fair.\r\nPrefers email.")},
                    ids.handle(), ids.uid()));
  b.Add(FieldRecord(kAddressBook,
                    {Wide(160, u"Omar"), Wide(160, u"Haddad"), Wide(161, u"شركة النور"), Plain(1, "omar@alnoor.example"),
                     Plain(8, "+971 50 555 0142"), Plain(7, "+971 4 555 0177"), Plain(10, "2A3B4C5D"),
                     Wide(189, u"Villa 12, Street 7"), Wide(197, u"Dubai"), Wide(200, u"UAE"),
                     Plain(82, "12/04/1979"), {77, TinyJpeg()}},
                    ids.handle(), ids.uid()));

  b.Add(NestedRecord(kAddressBookAll, {{0x0B, Hex("02000000")}}, {},
                     {Plain(32, "Maria"), Plain(32, "Garcia"), Plain(33, "Contoso Ltd"), Plain(42, "Architect"),
                      Plain(1, "maria.garcia@contoso.example"), Plain(6, "+34 91 555 0110"),
                      Plain(16, "+34 91 555 0111"), Plain(8, "+34 600 555 012"), Plain(61, "Calle Mayor 5"),
                      Plain(69, "Madrid"), Plain(71, "28013"), Plain(72, "Spain"), Plain(83, "06/09/2005"),
                      Plain(54, "http://www.contoso.example"), Plain(64, "Sister of Luis.")},
                     ids.handle(), ids.uid()));
  b.Add(NestedRecord(kAddressBookAll, {{0x0B, Hex("01000000")}}, {},
                     {Wide(160, u"Lina"), Wide(160, u"Khoury"), Wide(170, u"مهندسة"), Plain(8, "+961 3 555 018"),
                      Plain(1, "lina.khoury@example.org"), Plain(9, "+961 1 555 019"), Plain(59, "Personal")},
                     ids.handle(), ids.uid()));
  b.Add(NestedRecord(kAddressBookAll, {{0x0B, Hex("01000000")}}, {},
                     {Plain(32, "Pizza Roma"), Plain(6, "+1 416 555 0188"), Plain(17, "+1 416 555 0189"),
                      Plain(18, "Delivery until 23:00")},
                     ids.handle(), ids.uid()));
}

void AddAutoText(IpdBuilder& b, Ids& ids) {
  b.Add(FieldRecord(kAutoText, {Plain(1, "teh"), Plain(2, "the"), Byte(3, 0)}, ids.handle(), ids.uid()));
  b.Add(FieldRecord(kAutoText, {Plain(1, "mypin"), Plain(2, "My PIN is 2A3B4C5D"), Byte(3, 1)}, ids.handle(),
                    ids.uid()));
  b.Add(FieldRecord(kAutoText, {Wide(129, u"adn"), Wide(130, u"and"), Byte(3, 0)}, ids.handle(), ids.uid()));
}

void AddBookmarks(IpdBuilder& b, Ids& ids) {
  b.Add(FieldRecord(kBrowserBookmarks, BookmarkFields("BlackBerry", "http://mobile.blackberry.com/", TinyPng()),
                    ids.handle(), ids.uid()));
  b.Add(FieldRecord(kBrowserBookmarks, BookmarkFields("Weather", "http://m.weather.example/toronto", {}),
                    ids.handle(), ids.uid()));
}

void AddCalendars(IpdBuilder& b, Ids& ids) {
  b.Add(FieldRecord(kCalendar,
                    {Plain(2, "Dentist"), Plain(3, "Dr. Chen, 44 Elm Street"), Minutes(6, 21678330),
                     Minutes(7, 21678375), Plain(4, "Bring the insurance card.")},
                    ids.handle(), ids.uid()));
  b.Add(NestedRecord(kCalendarAll, {{0x0B, Hex("00000000")}}, Hex("01000000"),
                     {Wide(130, u"Project review"), Plain(3, "Room 4B"), Minutes(6, 21680040), Minutes(7, 21680130),
                      Plain(4, "Agenda:\r\n1. Budget\r\n2. Timeline")},
                     ids.handle(), ids.uid()));
  b.Add(NestedRecord(kCalendarAll, {{0x0B, Hex("00000000")}}, Hex("01000000"),
                     {Wide(130, u"اجتماع العائلة"), Wide(132, u"Dubai"), Minutes(6, 21682740), Minutes(7, 21682800)},
                     ids.handle(), ids.uid()));
}

void AddMemos(IpdBuilder& b, Ids& ids) {
  b.Add(FieldRecord(kMemos, {Plain(1, "Shopping list"), Plain(2, "Milk\r\nBread\r\nOlive oil\r\nDates")},
                    ids.handle(), ids.uid()));
  b.Add(FieldRecord(kMemos, {Wide(129, u"ملاحظات"), Wide(130, u"موعد الطبيب يوم الاثنين")}, ids.handle(),
                    ids.uid()));
}

void AddCalls(IpdBuilder& b, Ids& ids) {
  b.Add(FieldRecord(kPhoneCallLogs,
                    {{2, LE32(0)}, {3, LE32(185)}, {4, LE64(1300089912000)}, {6, LE32(0)},
                     Plain(12, "+14165550134"), Plain(31, "Ann Lee")},
                    ids.handle(), ids.uid()));
  b.Add(FieldRecord(kPhoneCallLogs,
                    {{2, LE32(1)}, {3, LE32(42)}, {4, LE64(1300123323000)}, {6, LE32(0)},
                     Plain(12, "+971505550142"), Wide(159, u"عمر حداد")},
                    ids.handle(), ids.uid()));
  b.Add(FieldRecord(kPhoneCallLogs,
                    {{2, LE32(2)}, {3, LE32(0)}, {4, LE64(1300171710000)}, {6, LE32(0)}, Plain(12, "+16135550000")},
                    ids.handle(), ids.uid()));
  b.Add(FieldRecord(kPhoneCallLogs,
                    {{2, LE32(1)}, {3, LE32(0)}, {4, LE64(1300276800000)}, {6, LE32(1)},
                     Plain(12, "+441632960123"), Plain(31, "Reception")},
                    ids.handle(), ids.uid()));
}

void AddSms(IpdBuilder& b, Ids& ids) {
  b.Add(SmsRecord(kSmsMessages, false, 1300089912000, 1300089940000,
                  {Plain(2, "+14165550134"), Plain(4, "Running 10 min late, see you at the cafe.")}, ids.handle()));
  b.Raw(MarkerBlock());
  b.Add(SmsRecord(kSmsMessages, true, 1300123323000, 1300123329000,
                  {Plain(2, "+14165550134"), Plain(4, "Flight lands 18:40.\r\nGate B12.")}, ids.handle()));
  b.Add(SmsRecord(kSmsMessages, false, 1300171710000, 1300171711000,
                  {Plain(2, "+971505550142"), {4, Utf16(u"مرحبا، كيف حالك؟")}}, ids.handle()));
  b.Add(SmsRecord(kSmsMessages, true, 1300276800000, 1300276801000,
                  {Plain(2, "+971505550142"), {4, Utf16(u"الحمد لله، بخير")}}, ids.handle()));
}

void AddServiceBooks(IpdBuilder& b, Ids& ids) {
  ServiceBookValues browser;
  browser.name = "Browser Config";
  browser.uid = "S31337099";
  browser.cid = "BrowserConfig";
  browser.description = "Internet Browser";
  browser.userId = -1;
  browser.connection[0] = "Internet Browser";
  browser.connection[1] = "IPPP";
  browser.connection[2] = "S31337099";
  browser.connection[3] = "BrowserConfig";
  browser.connection[4] = "http://mobile.blackberry.com";
  browser.connection[5] = "internet";
  browser.providerCode = 302720;
  browser.wirelessNetwork = "GPRS";
  browser.networkName = "Rogers Wireless";
  browser.networkId = 17;
  browser.version[0] = 4;
  browser.version[1] = 6;
  browser.version[2] = 1;
  browser.version[3] = 0;
  browser.version[4] = 1;
  browser.gateway[0] = 206;
  browser.gateway[1] = 51;
  browser.gateway[2] = 26;
  browser.gateway[3] = 120;
  browser.ports[0] = 3128;
  browser.ports[1] = 443;
  b.Add(FieldRecord(kServiceBook, ServiceBookFields(browser), ids.handle(), ids.uid()));

  ServiceBookValues email;
  email.name = "Desktop [CMIME]";
  email.uid = "S30412876";
  email.cid = "CMIME";
  email.description = "Email";
  email.userId = 7;
  email.connection[0] = "Desktop";
  email.connection[1] = "CMIME";
  email.connection[2] = "S30412876";
  email.connection[3] = "Desktop";
  email.connection[4] = "";
  email.connection[5] = "";
  email.providerCode = 302720;
  email.wirelessNetwork = "GPRS";
  email.networkName = "Rogers Wireless";
  email.networkId = 17;
  email.version[0] = 4;
  email.version[1] = 6;
  email.gateway[0] = 206;
  email.gateway[1] = 51;
  email.gateway[2] = 26;
  email.gateway[3] = 121;
  email.ports[0] = 3101;
  email.ports[1] = 0;
  b.Add(FieldRecord(kServiceBook, ServiceBookFields(email), ids.handle(), ids.uid()));
}

void AddTasks(IpdBuilder& b, Ids& ids) {
  b.Add(FieldRecord(kTasks,
                    {Plain(2, "Renew passport"), Byte(9, 1), Byte(10, 0),
                     Plain(3, "Photos from the studio on Main Street.\r\nForm B-7.")},
                    ids.handle(), ids.uid()));
  b.Add(FieldRecord(kTasks, {Wide(130, u"Call the bank"), Byte(9, 2), Byte(10, 2)}, ids.handle(), ids.uid()));
  b.Add(FieldRecord(kTasks, {Wide(130, u"تجديد رخصة القيادة"), Byte(9, 4), Byte(10, 1)}, ids.handle(), ids.uid()));
}

}  // namespace

Bytes SampleBackup() {
  IpdBuilder b;
  for (const char* name : kDatabaseNames) b.Database(name);
  Ids ids;
  AddContacts(b, ids);
  AddAutoText(b, ids);
  AddBookmarks(b, ids);
  AddCalendars(b, ids);
  b.Add(FieldRecord(kHandheldAgent, {{0x01, Hex("0100")}, Plain(0x02, "Handheld Agent"), {0x05, LE32(4061)}},
                    ids.handle(), ids.uid()));
  AddMemos(b, ids);
  b.Add(FieldRecord(kOptions, {Plain(0x01, "OwnerName"), Plain(0x02, "Ann Lee")}, ids.handle(), ids.uid()));
  AddCalls(b, ids);
  AddSms(b, ids);
  AddServiceBooks(b, ids);
  AddTasks(b, ids);
  return b.Build();
}

}  // namespace orchidlamp::testing
