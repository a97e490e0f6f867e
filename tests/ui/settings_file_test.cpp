#include "ui/settings_file.h"

#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include "support/my_settings_store.h"
#include "ui/ui_test.h"
#include "ui/user_settings.h"

namespace carvello {

class SettingsFileTest : public QObject {
  Q_OBJECT

 private slots:
  void init();
  void ReadsBackAfterTheFileWasClosed();
  void ReadsTheSameBeforeAndAfterTheFileIsWritten();
  void LiesUnderItsKeyInTheFile();
  void KeepsBytesOfEveryValue();
  void KeepsTextsThatLookLikeTheFilesOwnSyntax_data();
  void KeepsTextsThatLookLikeTheFilesOwnSyntax();
  void MissingAndForeignValuesAreNothing();
  void ADamagedFileReadsAsEmpty();
  void SaysWhenNothingCanBeWritten();
  void TheUsersFileLiesInTheConfigurationFolder();

 private:
  CMySettingsStore Open() const { return CMySettingsStore(std::make_unique<CSettingsFile>(m_path, kSettingsKey)); }

  std::unique_ptr<QTemporaryDir> m_pFolder;
  QString m_path;
};

void SettingsFileTest::init() {
  m_pFolder = std::make_unique<QTemporaryDir>();
  m_path = m_pFolder->filePath("settings.ini");
}

void SettingsFileTest::ReadsBackAfterTheFileWasClosed() {
  {
    CMySettingsStore store = Open();
    QVERIFY(store.Write("UTC", true));
    QVERIFY(store.Write("InputFile", "/rec/\xC3\xA4, b=1 \"x\".wav"));
    QVERIFY(store.Write("Bandwidth", 25000));
    QVERIFY(store.Write("CentreFreq", std::int64_t{7'100'000'000}));
    QVERIFY(store.Write("Level", -1.5));
    QVERIFY(store.Write(7, "Channel", 9));
  }
  const CMySettingsStore store = Open();
  bool bUtc = false;
  std::string input;
  int bandwidth = 0;
  std::int64_t frequency = 0;
  double level = 0;
  QVERIFY(store.Read("UTC", bUtc));
  QVERIFY(store.Read("InputFile", input));
  QVERIFY(store.Read("Bandwidth", bandwidth));
  QVERIFY(store.Read("CentreFreq", frequency));
  QVERIFY(store.Read("Level", level));
  int channel = 0;
  QVERIFY(store.Read(7, "Channel", channel));
  QCOMPARE(channel, 9);
  QVERIFY(bUtc);
  QCOMPARE(input, std::string("/rec/\xC3\xA4, b=1 \"x\".wav"));
  QCOMPARE(bandwidth, 25000);
  QCOMPARE(frequency, std::int64_t{7'100'000'000});
  QCOMPARE(level, -1.5);
}

void SettingsFileTest::ReadsTheSameBeforeAndAfterTheFileIsWritten() {
  const auto readAll = [](const CMySettingsStore& store) {
    int number = -1;
    std::string text = "none";
    std::vector<std::uint8_t> bytes{99};
    QList<bool> found;
    for (const char* name : {"Number", "Text", "Bytes"}) {
      found << store.Read(name, number) << store.Read(name, text) << store.Read(name, bytes);
    }
    return found;
  };
  QList<bool> before;
  {
    CMySettingsStore store = Open();
    QVERIFY(store.Write("Number", 5));
    QVERIFY(store.Write("Text", "words"));
    const std::uint8_t byte = 1;
    QVERIFY(store.Write("Bytes", &byte, 1));
    before = readAll(store);
  }
  QCOMPARE(readAll(Open()), before);
  // A number reads as a text, too, for the file keeps its digits.
  QCOMPARE(before, (QList<bool>{true, true, false, false, true, false, false, false, true}));
}

void SettingsFileTest::LiesUnderItsKeyInTheFile() {
  {
    CMySettingsStore store = Open();
    QVERIFY(store.Write("Format", 1000));
    QVERIFY(store.Write("CentreFreq", std::int64_t{0x41}));
  }
  QFile file(m_path);
  QVERIFY(file.open(QIODevice::ReadOnly));
  const QByteArray text = file.readAll();
  QVERIFY2(text.contains("[Software]"), text);
  QVERIFY2(text.contains("Halvarn%20%28V3%29\\Carvello\\Format=1000"), text);
  QVERIFY2(text.contains("Carvello\\CentreFreq=@ByteArray(A\\0\\0\\0\\0\\0\\0\\0)"), text);
}

void SettingsFileTest::KeepsBytesOfEveryValue() {
  std::vector<std::uint8_t> all(256);
  for (std::size_t i = 0; i < all.size(); ++i) all[i] = static_cast<std::uint8_t>(i);
  {
    CMySettingsStore store = Open();
    QVERIFY(store.Write("All", all.data(), all.size()));
    QVERIFY(store.Write("None", all.data(), 0));
  }
  const CMySettingsStore store = Open();
  std::vector<std::uint8_t> bytes;
  QVERIFY(store.Read("All", bytes));
  QCOMPARE(bytes, all);
  QVERIFY(store.Read("None", bytes));
  QVERIFY(bytes.empty());
}

void SettingsFileTest::KeepsTextsThatLookLikeTheFilesOwnSyntax_data() {
  QTest::addColumn<QString>("text");
  for (const char* text : {"", " ", "a, b", "a;b", "@ByteArray(x)", "@Invalid()", "C:\\temp\\new", "\"quoted\"", "x\ny",
                           "100%", "\xF0\x9F\x93\xBB"}) {
    QTest::newRow(text) << QString::fromUtf8(text);
  }
}

void SettingsFileTest::KeepsTextsThatLookLikeTheFilesOwnSyntax() {
  QFETCH(QString, text);
  {
    CMySettingsStore store = Open();
    QVERIFY(store.Write("OutputFolder", text.toStdString()));
  }
  std::string found = "none";
  QVERIFY(Open().Read("OutputFolder", found));
  QCOMPARE(QString::fromStdString(found), text);
}

void SettingsFileTest::MissingAndForeignValuesAreNothing() {
  CSettingsFile file(m_path, kSettingsKey);
  QVERIFY(!file.ReadInt("x") && !file.ReadText("x") && !file.ReadBytes("x"));
  QVERIFY(file.WriteText("Text", "12 monkeys"));
  QVERIFY(file.WriteBytes("Bytes", {'5'}));
  QVERIFY(!file.ReadInt("Text"));
  QVERIFY(!file.ReadBytes("Text"));
  QVERIFY(!file.ReadInt("Bytes"));
  QVERIFY(!file.ReadText("Bytes"));
}

void SettingsFileTest::ADamagedFileReadsAsEmpty() {
  QFile file(m_path);
  QVERIFY(file.open(QIODevice::WriteOnly));
  file.write(QByteArray("\0\xFF[[Software\nHalvarn\\UTC", 24));
  file.close();
  bool bUtc = true;
  QVERIFY(!Open().Read("UTC", bUtc));
  QVERIFY(bUtc);
}

void SettingsFileTest::SaysWhenNothingCanBeWritten() {
  // A folder stands where the file should.
  QVERIFY(QDir().mkdir(m_path));
  CMySettingsStore store = Open();
  QVERIFY(!store.Write("UTC", true));
}

void SettingsFileTest::TheUsersFileLiesInTheConfigurationFolder() {
  { QVERIFY(CMySettingsStore(OpenUserSettings()).Write("UTC", false)); }
  QVERIFY(QFileInfo::exists(qEnvironmentVariable("XDG_CONFIG_HOME") + "/Carvello/Carvello.ini"));
  bool bUtc = true;
  QVERIFY(CMySettingsStore(OpenUserSettings()).Read("UTC", bUtc));
  QVERIFY(!bUtc);
}

}  // namespace carvello

CARVELLO_UI_TEST(carvello::SettingsFileTest)
#include "settings_file_test.moc"
