#include "platform/PropertyList.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <clocale>
#include <gtest/gtest.h>
#include <random>
#include <sys/stat.h>
#include <unistd.h>

namespace quorvane::platform {

namespace {

namespace PropertyList = platform::PropertyList;

const QString key = QStringLiteral("k");

QByteArray xml(const QByteArray &inside) {
    return R"(<?xml version="1.0" encoding="UTF-8"?><plist version="1.0"><dict>)" + inside +
           "</dict></plist>";
}

/// One value after writing and reading; invalid when it was not read.
QVariant roundTrip(const QVariant &value) {
    const auto result = PropertyList::parse(PropertyList::write({{key, value}}));
    return result ? result->value(key) : QVariant();
}

class RoundTrip : public ::testing::TestWithParam<QVariant> {};

TEST_P(RoundTrip, IsReadAgainWithItsType) {
    const QVariant back = roundTrip(GetParam());
    EXPECT_EQ(back.typeId(), GetParam().typeId());
    EXPECT_EQ(back, GetParam());
}

const char16_t nulInside[] = u"a\0b\0";

INSTANTIATE_TEST_SUITE_P(
    Values, RoundTrip,
    ::testing::Values(
        QVariant(QStringLiteral("")), QVariant(QStringLiteral("  blanks  ")), QVariant(QStringLiteral("   ")),
        QVariant(QStringLiteral("<a&b>\"'")), QVariant(QStringLiteral("tab\tline\nend\n")),
        QVariant(QStringLiteral("return\rhere")), QVariant(QString::fromUtf16(nulInside, 4)),
        QVariant(QString(QChar(u'\x01'))), QVariant(QString(QChar(0xD800))), QVariant(QString(QChar(0xFFFF))),
        QVariant(QStringLiteral("äß漢😀")), QVariant(QStringLiteral("]]>")), QVariant(qint64{0}),
        QVariant(qint64{-1}), QVariant(std::numeric_limits<qint64>::min()),
        QVariant(std::numeric_limits<qint64>::max()), QVariant(true), QVariant(false), QVariant(0.1),
        QVariant(-1.0 / 3), QVariant(1e300), QVariant(5.0), QVariant(QByteArray("")),
        QVariant(QByteArray("\0\x01\xFF", 3)),
        QVariant(QByteArray("\xFF\xFE\x51\x53"
                            "ab")),
        QVariant(QByteArray("\xFF\xFE\x51\x44"
                            "ab")),
        QVariant(QVariantList{qint64{1}, QStringLiteral("two"), QVariantMap{{QStringLiteral("x"), true}}}),
        QVariant(QVariantMap{}), QVariant(QVariantList{}),
        QVariant(QDateTime::fromSecsSinceEpoch(1700000000, Qt::UTC))));

TEST(PropertyListWrite, ScrambledTextKeepsItsFinalNul) {
    const QVariant back = roundTrip(QString::fromUtf16(u"aXbY\0", 5));
    EXPECT_EQ(back.toString().size(), 5);
    EXPECT_EQ(back.toString()[4], QChar(u'\0'));
}

TEST(PropertyListWrite, OtherIntegerTypesBecomeIntegers) {
    EXPECT_EQ(roundTrip(7), QVariant(qint64{7}));
    EXPECT_EQ(roundTrip(7U).typeId(), QMetaType::LongLong);
}

TEST(PropertyListWrite, OmitsUnsupportedValues) {
    const QVariantMap map{{QString(QChar(u'\x02')), 1}, {QStringLiteral("good"), 2}};
    EXPECT_EQ(PropertyList::parse(PropertyList::write(map)),
              (QVariantMap{{QStringLiteral("good"), qint64{2}}}));
}

TEST(PropertyListWrite, OtherToolsCanReadIt) {
    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("a.plist"));
    ASSERT_TRUE(PropertyList::writeFile(
        path, {{QStringLiteral("n"), 5}, {QStringLiteral("s"), QString(QChar(u'\0'))}}));
    QProcess python;
    python.start(
        QStringLiteral("/usr/bin/python3"),
        {QStringLiteral("-c"),
         QStringLiteral(
             "import plistlib,sys;d=plistlib.load(open(sys.argv[1],'rb'));print(d['n'],d['s'].hex())"),
         path});
    ASSERT_TRUE(python.waitForFinished());
    EXPECT_EQ(python.readAllStandardOutput(), "5 fffe51530000\n");
}

TEST(PropertyListParse, ReadsBinaryLists) {
    QProcess python;
    python.start(
        QStringLiteral("/usr/bin/python3"),
        {QStringLiteral("-c"),
         QStringLiteral(
             "import plistlib,sys;sys.stdout.buffer.write(plistlib.dumps({'a':'x\\0y','b':-1,'c':[1.5,True,"
             "b'\\0z'],'u':'\\u00e4\\0','d':{'k':'v'}},fmt=plistlib.FMT_BINARY))")});
    ASSERT_TRUE(python.waitForFinished());
    const auto map = PropertyList::parse(python.readAllStandardOutput());
    ASSERT_TRUE(map);
    EXPECT_EQ(map->value(QStringLiteral("b")), QVariant(qint64{-1}));
    EXPECT_EQ(map->value(QStringLiteral("c")), QVariant(QVariantList{1.5, true, QByteArray("\0z", 2)}));
    EXPECT_EQ(map->value(QStringLiteral("d")).toMap().value(key), QVariant(QStringLiteral("v")));
}

TEST(PropertyListParse, RealsDoNotDependOnTheLocale) {
    QTemporaryDir folder;
    QProcess localedef;
    localedef.start(QStringLiteral("localedef"),
                    {QStringLiteral("-i"), QStringLiteral("de_DE"), QStringLiteral("-f"),
                     QStringLiteral("UTF-8"), folder.filePath(QStringLiteral("de_DE.UTF-8"))});
    if (!localedef.waitForFinished(60000) || localedef.exitCode() != 0) {
        GTEST_SKIP() << "no locale with a decimal comma can be created here";
    }
    ASSERT_TRUE(qputenv("LOCPATH", folder.path().toUtf8()));
    const QByteArray before = setlocale(LC_ALL, nullptr);
    ASSERT_NE(setlocale(LC_ALL, "de_DE.UTF-8"), nullptr);
    ASSERT_STREQ(localeconv()->decimal_point, ",");
    EXPECT_EQ(roundTrip(0.25), QVariant(0.25));
    setlocale(LC_ALL, before.constData());
    qunsetenv("LOCPATH");
}

TEST(PropertyListParse, RefusesOtherRootsThanDictionaries) {
    for (const char *text : {"", "x", "<plist/>", "<plist version=\"1.0\"><array/></plist>", "bplist00",
                             "bplist01", "<?xml version=\"1.0\"?>", "{\"json\":1}", "<dict>"}) {
        EXPECT_FALSE(PropertyList::parse(text)) << text;
    }
}

TEST(PropertyListParse, RefusesNulBytesAndBrokenUtf8) {
    EXPECT_TRUE(PropertyList::parse(xml("<key>k</key><string>ab</string>")));
    EXPECT_FALSE(PropertyList::parse(xml(QByteArray("<key>k</key><string>a\0b</string>", 32))));
    EXPECT_FALSE(PropertyList::parse(xml("<key>k</key><string>a&#0;b</string>")));
    EXPECT_FALSE(PropertyList::parse(xml("<key>k</key><string>\xC3\x28</string>")));
}

TEST(PropertyListParse, RefusesEntityDeclarations) {
    EXPECT_FALSE(PropertyList::parse("<!DOCTYPE plist [<!ENTITY a \"b\">]>" +
                                     xml("<key>k</key><string>&a;</string>")));
}

TEST(PropertyListParse, LimitsDepth) {
    const auto nested = [](int depth) {
        return xml("<key>k</key>" + QByteArray("<array>").repeated(depth) +
                   QByteArray("</array>").repeated(depth));
    };
    EXPECT_TRUE(PropertyList::parse(nested(60)));
    EXPECT_FALSE(PropertyList::parse(nested(100)));
    EXPECT_FALSE(PropertyList::parse(nested(4000)));
    EXPECT_FALSE(PropertyList::parse(nested(1'000'000)));
    EXPECT_FALSE(PropertyList::parse(xml("<key>k</key>" + QByteArray("<array>").repeated(1'000'000))));
}

TEST(PropertyListParse, LimitsSize) {
    EXPECT_FALSE(
        PropertyList::parse(xml("<key>k</key><string>" + QByteArray(17 * 1024 * 1024, 'x') + "</string>")));
    EXPECT_FALSE(PropertyList::parse(
        xml("<key>k</key><array>" + QByteArray("<true/>").repeated(500'000) + "</array>")));
}

/// A binary list of arrays, each containing the next one twice: 2^levels values when expanded.
QByteArray sharedArrays(int levels) {
    QByteArray objects("bplist00");
    QByteArray offsets;
    const auto begin = [&] {
        offsets += static_cast<char>(objects.size());
    };
    begin();
    objects += QByteArray("\xD1\x01\x02", 3);
    begin();
    objects += QByteArray("\x51k", 2);
    for (int i = 0; i < levels; ++i) {
        begin();
        const char next = static_cast<char>(i + 3);
        objects += '\xA2';
        objects += next;
        objects += next;
    }
    begin();
    objects += '\x09';
    const qsizetype table = objects.size();
    objects += offsets;
    objects += QByteArray(6, '\0') + '\x01' + '\x01';
    objects += QByteArray(7, '\0') + static_cast<char>(offsets.size());
    objects += QByteArray(8, '\0');
    objects += QByteArray(7, '\0') + static_cast<char>(table);
    return objects;
}

TEST(PropertyListParse, LimitsExpandedSharedObjects) {
    EXPECT_TRUE(PropertyList::parse(sharedArrays(3)));
    EXPECT_FALSE(PropertyList::parse(sharedArrays(40)));
}

TEST(PropertyListParse, RefusesLoops) {
    QByteArray bytes = sharedArrays(3);
    const qsizetype at = bytes.indexOf('\xA2');
    bytes[at + 1] = '\x02'; // the array contains itself
    EXPECT_FALSE(PropertyList::parse(bytes));
}

TEST(PropertyListParse, SurvivesAThousandHostileInputs) {
    // Real lists with a few bytes changed, removed or repeated reach deepest into the parser.
    const QVariantMap map{{QStringLiteral("text"), QStringLiteral("value &amp; more")},
                          {QStringLiteral("list"), QVariantList{1, 2.5, true, QByteArray("data")}},
                          {QStringLiteral("date"), QDateTime::fromSecsSinceEpoch(1, Qt::UTC)}};
    QProcess python;
    python.start(
        QStringLiteral("/usr/bin/python3"),
        {QStringLiteral("-c"),
         QStringLiteral(
             "import "
             "plistlib,sys;sys.stdout.buffer.write(plistlib.dumps({'a':'text','u':'\\u00e4','l':[1,2.5,"
             "True,b'data',{'k':-1}],'long':'x'*300},fmt=plistlib.FMT_BINARY))")});
    ASSERT_TRUE(python.waitForFinished());
    const QList<QByteArray> seeds{PropertyList::write(map), python.readAllStandardOutput()};
    ASSERT_TRUE(PropertyList::parse(seeds[1]));
    std::mt19937 random(20260101);
    int refused = 0;
    for (int round = 0; round < 4000; ++round) {
        QByteArray bytes = seeds[round % 2];
        const auto changes = random() % 6 + 1;
        for (unsigned i = 0; i < changes && !bytes.isEmpty(); ++i) {
            const auto at = static_cast<qsizetype>(random() % static_cast<unsigned>(bytes.size()));
            switch (random() % 4) {
            case 0:
                bytes[at] = static_cast<char>(random());
                break;
            case 1:
                bytes.truncate(at);
                break;
            case 2:
                bytes.remove(at, static_cast<qsizetype>(random() % 8));
                break;
            default:
                bytes.insert(at, bytes.mid(at, static_cast<qsizetype>(random() % 64)));
            }
        }
        if (!PropertyList::parse(bytes)) {
            ++refused;
        }
    }
    EXPECT_GT(refused, 1000);
    EXPECT_LT(refused, 4000);
}

class PropertyListFile : public ::testing::Test {
protected:
    QTemporaryDir m_folder;
    const QString m_path = m_folder.filePath(QStringLiteral("file.plist"));
    const QVariantMap m_map{{key, QStringLiteral("v")}};
};

TEST_F(PropertyListFile, IsPrivateWithAnyUmask) {
    for (const mode_t mask : {0000U, 0077U, 0777U}) {
        const mode_t before = umask(mask);
        EXPECT_TRUE(PropertyList::writeFile(m_path, m_map));
        umask(before);

        struct stat status {};

        ASSERT_EQ(stat(m_path.toUtf8().constData(), &status), 0);
        EXPECT_EQ(status.st_mode & 07777U, 0600U);
        EXPECT_EQ(PropertyList::readFile(m_path), m_map);
        QFile::remove(m_path);
    }
}

TEST_F(PropertyListFile, LinkIsReplacedWhenWrittenAndNotFollowedWhenRead) {
    const QString target = m_folder.filePath(QStringLiteral("target"));
    ASSERT_TRUE(PropertyList::writeFile(target, {{key, 1}}));
    ASSERT_TRUE(QFile::link(target, m_path));
    EXPECT_FALSE(PropertyList::readFile(m_path));
    EXPECT_TRUE(PropertyList::writeFile(m_path, m_map));
    EXPECT_EQ(PropertyList::readFile(m_path), m_map);
    EXPECT_EQ(PropertyList::readFile(target), (QVariantMap{{key, qint64{1}}}));
}

TEST_F(PropertyListFile, ReadingDoesNotHangOnAPipe) {
    ASSERT_EQ(mkfifo(m_path.toUtf8().constData(), 0600), 0);
    EXPECT_FALSE(PropertyList::readFile(m_path));
}

TEST_F(PropertyListFile, FailedWriteLeavesNothing) {
    EXPECT_FALSE(PropertyList::writeFile(m_folder.filePath(QStringLiteral("no/such/file")), m_map));
    // A folder with that name prevents the write.
    ASSERT_TRUE(QDir().mkpath(m_path + QStringLiteral("/x")));
    EXPECT_FALSE(PropertyList::writeFile(m_path, m_map));
    EXPECT_EQ(QDir(m_folder.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
              QStringList{QStringLiteral("file.plist")});
}

TEST(PropertyListFound, KeyWithANulIsRefused) {
    for (const char *hex :
         {"62706c6973743030d101025361006209080b0f0000000000000101000000000000000300000000000000"
          "000000000000000010",
          "62706c6973743030d101026320ac0000006209080b1200000000000001010000000000000003000000000000"
          "00000000000000000013"}) {
        EXPECT_FALSE(PropertyList::parse(QByteArray::fromHex(hex)).has_value()) << hex;
    }
}

TEST(PropertyListFound, ByteOrderMarkAtTheBeginningIsKept) {
    const QString marked = QString(QChar(0xFEFF)) + QStringLiteral("text");
    const QVariantMap before{{marked, marked}};
    EXPECT_EQ(PropertyList::parse(PropertyList::write(before)), before);
}

TEST(PropertyListFound, DateThatTheLibraryCannotHoldIsNotWrittenAsAnother) {
    const QDateTime far(QDate(2200, 1, 1), QTime(0, 0), Qt::UTC);
    const auto after = PropertyList::parse(PropertyList::write({{QStringLiteral("far"), far}}));
    if (after) {
        EXPECT_FALSE(after->contains(QStringLiteral("far")));
    }
    const QDateTime near(QDate(2026, 1, 2), QTime(3, 4, 5), Qt::UTC);
    const auto kept = PropertyList::parse(PropertyList::write({{QStringLiteral("near"), near}}));
    ASSERT_TRUE(kept.has_value());
    EXPECT_EQ(kept->value(QStringLiteral("near")).toDateTime(), near);
}

} // namespace

} // namespace quorvane::platform
