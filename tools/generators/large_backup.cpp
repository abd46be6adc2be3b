#include "generators/large_backup.h"

#include <string_view>

#include "core/ipd_format.h"
#include "core/hex_text.h"
#include "generators/record_shapes.h"
#include "generators/tiny_images.h"

namespace orchidlamp::testing {
namespace {

constexpr std::string_view kFirstNames[] = {"Ann",  "Omar",  "Maria", "Lina",  "John",   "Wei",    "Fatima", "Luis",
                                            "Sara", "Ahmed", "Emma",  "Noah",  "Yusuf",  "Chloe",  "Ivan",   "Priya",
                                            "Tom",  "Rania", "Kenji", "Olga",  "Hassan", "Grace",  "Pedro",  "Mona"};
constexpr std::string_view kLastNames[] = {"Lee",    "Haddad", "Garcia", "Khoury", "Smith",  "Chen",
                                           "Nasser", "Brown",  "Rossi",  "Kim",    "Martin", "Silva",
                                           "Novak",  "Tanaka", "Saleh",  "Dubois", "Jones",  "Patel"};
constexpr std::u16string_view kWideNames[] = {u"Omar", u"Lina", u"Yusuf", u"Rania", u"Hassan", u"Mona", u"Karim",
                                              u"Nour"};
constexpr std::u16string_view kArabicNames[] = {u"عمر حداد", u"لينا خوري", u"أحمد ناصر", u"فاطمة صالح",
                                                u"كريم يوسف", u"منى حسن"};
constexpr std::u16string_view kArabicTexts[] = {
    u"مرحبا، كيف حالك؟", u"سأصل بعد عشر دقائق", u"الحمد لله، بخير", u"اتصل بي عندما تصل",
    u"موعد الطبيب يوم الاثنين", u"شكرا جزيلا", u"هل أنت في المكتب؟", u"اجتماع العائلة يوم الجمعة"};
constexpr std::string_view kWords[] = {
    "ok",     "see",   "you",     "at",       "the",     "cafe",   "meeting", "tomorrow", "running", "late",
    "call",   "me",    "when",    "you",      "land",    "thanks", "for",     "dinner",   "can",     "we",
    "move",   "it",    "to",      "friday",   "please",  "send",   "report",  "before",   "noon",    "traffic",
    "is",     "bad",   "on",      "highway",  "parking", "lot",    "b",       "room",     "4",       "gate",
    "flight", "lands", "pick",    "up",       "kids",    "school", "game",    "tonight",  "happy",   "birthday",
    "bring",  "milk",  "bread",   "and",      "the",     "charger", "left",   "my",       "keys",    "inside"};
constexpr std::string_view kCompanies[] = {"Northwind Traders", "Contoso Ltd", "Fabrikam",  "Tailspin Toys",
                                           "Litware Inc",       "Adventure Works", "Woodgrove Bank", "Proseware"};
constexpr std::string_view kCities[] = {"Toronto", "Dubai", "Madrid", "Beirut", "London", "Ottawa", "Cairo", "Tokyo"};
constexpr std::string_view kCountries[] = {"Canada", "UAE", "Spain", "Lebanon", "UK", "Canada", "Egypt", "Japan"};
constexpr std::string_view kSubjects[] = {"Dentist",        "Project review", "Lunch with Sara", "Team meeting",
                                          "Flight to Dubai", "Car service",    "Parent evening",  "Gym"};
constexpr std::string_view kHosts[] = {"mobile.blackberry.com", "m.weather.example", "news.example.org",
                                       "maps.example.com", "m.bank.example"};

template <class T, std::size_t N>
const T& Pick(RecordFaker& f, const T (&list)[N]) {
  return list[f.Below(static_cast<std::uint32_t>(N))];
}

Field Plain(std::uint8_t type, std::string_view text) { return {type, Text(text)}; }
Field Wide(std::uint8_t type, std::u16string_view text) { return {type, WideText(text)}; }

std::u16string Widen(std::string_view ascii) { return std::u16string(ascii.begin(), ascii.end()); }

}  // namespace

RecordFaker::RecordFaker(std::uint64_t seed) : state_(seed ^ 0x9E3779B97F4A7C15ULL) {}

std::uint64_t RecordFaker::Next() {
  // splitmix64: small, fast and fully specified, so a seed means the same bytes everywhere.
  std::uint64_t z = (state_ += 0x9E3779B97F4A7C15ULL);
  z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ULL;
  z = (z ^ (z >> 27)) * 0x94D049BB133111EBULL;
  return z ^ (z >> 31);
}

std::uint32_t RecordFaker::Below(std::uint32_t bound) {
  return static_cast<std::uint32_t>((Next() >> 32) * bound >> 32);
}

std::string RecordFaker::Sentence(std::size_t minWords, std::size_t maxWords) {
  const std::size_t n = minWords + Below(static_cast<std::uint32_t>(maxWords - minWords + 1));
  std::string s;
  for (std::size_t i = 0; i < n; ++i) {
    if (i) s += ' ';
    s += Pick(*this, kWords);
  }
  if (!s.empty()) s[0] = static_cast<char>(s[0] >= 'a' && s[0] <= 'z' ? s[0] - 32 : s[0]);
  return s + (Chance(70) ? "." : "?");
}

std::string RecordFaker::PhoneNumber() {
  static constexpr std::string_view kPrefixes[] = {"+1416555", "+1647555", "+97150555", "+3491555", "+9613555"};
  std::string n(Pick(*this, kPrefixes));
  for (int i = 0; i < 4; ++i) n += static_cast<char>('0' + Below(10));
  return n;
}

Record RecordFaker::Sms(std::uint16_t database) {
  clockMs_ += 1000ULL * (20 + Below(7200));
  const std::uint64_t sent = clockMs_;
  const bool outgoing = Chance(45);
  std::vector<Field> fields = {Plain(2, PhoneNumber())};
  if (Chance(15)) {
    fields.push_back({4, Utf16(Pick(*this, kArabicTexts))});
  } else {
    std::string text = Sentence(2, 24);
    if (Chance(10)) text += "\r\n" + Sentence(1, 6);
    fields.push_back(Plain(4, text));
  }
  fields.push_back({7, LE32(Below(4))});
  return SmsRecord(database, outgoing, sent, sent + 1000 * Below(60), fields, NextHandle());
}

Record RecordFaker::Call(std::uint16_t database) {
  clockMs_ += 1000ULL * (60 + Below(14400));
  const std::uint32_t roll = Below(100);
  const std::uint32_t direction = roll < 45 ? 0 : roll < 75 ? 1 : 2;
  std::vector<Field> fields = {{2, LE32(direction)},
                               {3, LE32(direction == 2 ? 0 : Below(1800))},
                               {4, LE64(clockMs_)},
                               {6, LE32(Chance(3) ? 1 + Below(3) : 0)},
                               Plain(12, PhoneNumber())};
  const std::uint32_t named = Below(100);
  if (named < 10)
    fields.push_back(Wide(159, Pick(*this, kArabicNames)));
  else if (named < 55)
    fields.push_back(Plain(31, std::string(Pick(*this, kFirstNames)) + " " + std::string(Pick(*this, kLastNames))));
  return FieldRecord(database, fields, NextHandle(), NextUid());
}

Record RecordFaker::Contact(std::uint16_t database, bool nested) {
  std::vector<Field> fields;
  if (Chance(20)) {
    fields.push_back(Wide(160, Pick(*this, kWideNames)));
    fields.push_back(Wide(160, Widen(Pick(*this, kLastNames))));
  } else {
    fields.push_back(Plain(32, Pick(*this, kFirstNames)));
    if (Chance(90)) fields.push_back(Plain(32, Pick(*this, kLastNames)));
  }
  if (Chance(50)) fields.push_back(Plain(33, Pick(*this, kCompanies)));
  if (Chance(60)) fields.push_back(Plain(1, std::string(Pick(*this, kFirstNames)) + "@example.com"));
  fields.push_back(Plain(8, PhoneNumber()));
  if (Chance(40)) fields.push_back(Plain(6, PhoneNumber()));
  if (Chance(20)) fields.push_back(Plain(7, PhoneNumber()));
  if (Chance(30)) {
    const std::uint32_t city = Below(static_cast<std::uint32_t>(std::size(kCities)));
    fields.push_back(Plain(35, std::to_string(1 + Below(400)) + " " + std::string(Pick(*this, kLastNames)) + " Street"));
    fields.push_back(Plain(38, kCities[city]));
    fields.push_back(Plain(41, kCountries[city]));
  }
  if (Chance(10)) fields.push_back(Wide(161, Pick(*this, kArabicNames)));
  if (Chance(15)) fields.push_back(Plain(64, Sentence(3, 12)));
  if (Chance(5)) fields.push_back({77, TinyJpeg()});
  if (!nested) return FieldRecord(database, fields, NextHandle(), NextUid());
  return NestedRecord(database, {{0x0B, LE32(Below(3))}}, {}, fields, NextHandle(), NextUid());
}

Record RecordFaker::Appointment(std::uint16_t database, bool nested) {
  const std::uint32_t start = static_cast<std::uint32_t>(clockMs_ / 60000) + Below(60 * 24 * 60);
  std::vector<Field> fields;
  if (Chance(15))
    fields.push_back(Wide(130, Pick(*this, kArabicTexts)));
  else
    fields.push_back(Plain(2, Pick(*this, kSubjects)));
  if (Chance(50)) fields.push_back(Plain(3, Pick(*this, kCities)));
  fields.push_back({6, LE32(start)});
  fields.push_back({7, LE32(start + 15 * (1 + Below(12)))});
  if (Chance(30)) fields.push_back(Plain(4, Sentence(3, 15)));
  if (!nested) return FieldRecord(database, fields, NextHandle(), NextUid());
  return NestedRecord(database, {{0x0B, LE32(0)}}, LE32(1), fields, NextHandle(), NextUid());
}

Record RecordFaker::Memo(std::uint16_t database) {
  if (Chance(15))
    return FieldRecord(database, {Wide(129, Pick(*this, kArabicNames)), Wide(130, Pick(*this, kArabicTexts))},
                       NextHandle(), NextUid());
  std::string body = Sentence(3, 10);
  for (std::uint32_t lines = Below(6); lines > 0; --lines) body += "\r\n" + Sentence(1, 8);
  return FieldRecord(database, {Plain(1, Sentence(1, 3)), Plain(2, body)}, NextHandle(), NextUid());
}

Record RecordFaker::Task(std::uint16_t database) {
  std::vector<Field> fields;
  if (Chance(15))
    fields.push_back(Wide(130, Pick(*this, kArabicTexts)));
  else
    fields.push_back(Plain(2, Sentence(2, 5)));
  fields.push_back({9, Bytes{static_cast<std::uint8_t>(Below(5))}});
  fields.push_back({10, Bytes{static_cast<std::uint8_t>(Below(3))}});
  if (Chance(40)) fields.push_back(Plain(3, Sentence(3, 12)));
  return FieldRecord(database, fields, NextHandle(), NextUid());
}

Record RecordFaker::AutoText(std::uint16_t database) {
  const std::string word(Pick(*this, kWords));
  std::string typo = word;
  if (typo.size() > 1) std::swap(typo[0], typo[1]);
  return FieldRecord(database, {Plain(1, typo), Plain(2, word), {3, Bytes{0}}}, NextHandle(), NextUid());
}

Record RecordFaker::Bookmark(std::uint16_t database) {
  const std::string host(Pick(*this, kHosts));
  return FieldRecord(database,
                     BookmarkFields(Sentence(1, 3), "http://" + host + "/" + std::to_string(Below(1000)),
                                    Chance(30) ? TinyPng() : Bytes{}),
                     NextHandle(), NextUid());
}

Record RecordFaker::ServiceBook(std::uint16_t database) {
  static constexpr std::string_view kBooks[][3] = {{"Browser Config", "BrowserConfig", "IPPP"},
                                                   {"Desktop [CMIME]", "CMIME", "CMIME"},
                                                   {"WAP Push Config", "WPTCP", "WAP"},
                                                   {"Provisioning", "PROV", "IPPP"}};
  const auto& book = kBooks[Below(4)];
  std::string uid = "S";
  uid += std::to_string(30000000 + Below(9999999));
  ServiceBookValues v;
  v.name = book[0];
  v.uid = uid;
  v.cid = book[1];
  v.description = book[0];
  v.userId = Chance(50) ? -1 : static_cast<std::int32_t>(Below(100));
  v.connection[0] = book[0];
  v.connection[1] = book[2];
  v.connection[2] = uid;
  v.connection[3] = book[1];
  v.providerCode = 302720;
  v.wirelessNetwork = "GPRS";
  v.networkName = "Rogers Wireless";
  v.networkId = 17;
  v.version[0] = 4;
  v.gateway[0] = 206;
  v.gateway[1] = 51;
  v.gateway[2] = 26;
  v.gateway[3] = static_cast<std::uint8_t>(Below(256));
  v.ports[0] = 3101;
  return FieldRecord(database, ServiceBookFields(v), NextHandle(), NextUid());
}

Record RecordFaker::Opaque(std::uint16_t database) {
  Bytes blob(8 + Below(40));
  for (std::uint8_t& b : blob) b = static_cast<std::uint8_t>(Below(256));
  return FieldRecord(database, {{1, LE32(Below(1u << 31))}, {2, blob}}, NextHandle(), NextUid());
}

std::array<std::size_t, kLargeBackupDatabases.size()> LargeBackupPlan(std::size_t records) {
  // Per mille of the total, in kLargeBackupDatabases order; what rounding leaves goes to SMS.
  static constexpr std::array<std::size_t, kLargeBackupDatabases.size()> kPerMille = {
      10, 90, 10, 10, 5, 60, 2, 30, 1, 300, 450, 5, 25, 2};
  constexpr std::size_t kSms = 10;
  std::array<std::size_t, kLargeBackupDatabases.size()> plan{};
  std::size_t given = 0;
  for (std::size_t i = 0; i < plan.size(); ++i) given += plan[i] = records * kPerMille[i] / 1000;
  plan[kSms] += records - given;
  return plan;
}

std::uint64_t WriteLargeBackup(std::ostream& out, std::size_t records, std::uint64_t seed) {
  std::string head = IpdHeaderHex(kLargeBackupDatabases.size());
  for (const char* name : kLargeBackupDatabases) head += NameEntryHex(name);
  const Bytes header = HexToBytes(head);
  out.write(reinterpret_cast<const char*>(header.data()), static_cast<std::streamsize>(header.size()));
  std::uint64_t written = header.size();

  RecordFaker faker(seed);
  const auto plan = LargeBackupPlan(records);
  std::size_t emitted = 0;
  for (std::uint16_t db = 0; db < plan.size(); ++db) {
    const std::string_view name = kLargeBackupDatabases[db];
    for (std::size_t i = 0; i < plan[db]; ++i) {
      Record r;
      if (name == "Address Book" || name == "Address Book - All") r = faker.Contact(db, name != "Address Book");
      else if (name == "AutoText") r = faker.AutoText(db);
      else if (name == "Browser Bookmarks") r = faker.Bookmark(db);
      else if (name == "Calendar" || name == "Calendar - All") r = faker.Appointment(db, name != "Calendar");
      else if (name == "Memos") r = faker.Memo(db);
      else if (name == "Phone Call Logs") r = faker.Call(db);
      else if (name == "SMS Messages") r = faker.Sms(db);
      else if (name == "Service Book") r = faker.ServiceBook(db);
      else if (name == "Tasks") r = faker.Task(db);
      else r = faker.Opaque(db);
      // Marker blocks stand between records, never after the last one.
      Bytes bytes = RecordBytes(r);
      if (emitted > 0 && faker.Below(1000) < 2) {
        const Bytes marker = MarkerBlock();
        bytes.insert(bytes.begin(), marker.begin(), marker.end());
      }
      out.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
      written += bytes.size();
      ++emitted;
    }
  }
  return written;
}

}  // namespace orchidlamp::testing
