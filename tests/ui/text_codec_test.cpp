// The Windows-1252 boundary between the system's text and Qt, and the file dialog filters.

#include <QtTest>
#include <string>

#include "ui/qt_host.h"
#include "ui/text_codec.h"

using zv::ui::fromSystemText;
using zv::ui::toSystemText;

class TextCodecTest : public QObject {
  Q_OBJECT
 private slots:
  void everyHighByteRoundTrips() {
    std::string bytes;
    for (int b = 0x80; b <= 0xFF; ++b)
      bytes += static_cast<char>(b);
    QString text = fromSystemText(bytes);
    QCOMPARE(text.size(), 0x80);
    QCOMPARE(toSystemText(text), bytes);
  }

  void lowBytesAreAscii() {
    std::string bytes;
    for (int b = 1; b < 0x80; ++b)
      bytes += static_cast<char>(b);
    QCOMPARE(fromSystemText(bytes), QString::fromLatin1(bytes.c_str()));
  }

  void byteToCharacter_data() {
    QTest::addColumn<int>("byte");
    QTest::addColumn<int>("character");
    QTest::newRow("euro") << 0x80 << 0x20AC;
    QTest::newRow("undefined 0x81 keeps its number") << 0x81 << 0x0081;
    QTest::newRow("low quote") << 0x82 << 0x201A;
    QTest::newRow("ellipsis") << 0x85 << 0x2026;
    QTest::newRow("undefined 0x8D") << 0x8D << 0x008D;
    QTest::newRow("Z caron") << 0x8E << 0x017D;
    QTest::newRow("undefined 0x90") << 0x90 << 0x0090;
    QTest::newRow("right single quote") << 0x92 << 0x2019;
    QTest::newRow("em dash") << 0x97 << 0x2014;
    QTest::newRow("trade mark") << 0x99 << 0x2122;
    QTest::newRow("Y diaeresis") << 0x9F << 0x0178;
    QTest::newRow("no-break space") << 0xA0 << 0x00A0;
    QTest::newRow("one quarter") << 0xBC << 0x00BC;
    QTest::newRow("e acute") << 0xE9 << 0x00E9;
    QTest::newRow("y diaeresis") << 0xFF << 0x00FF;
  }

  void byteToCharacter() {
    QFETCH(int, byte);
    QFETCH(int, character);
    QString text = fromSystemText(std::string(1, static_cast<char>(byte)));
    QCOMPARE(text.size(), 1);
    QCOMPARE(static_cast<int>(text.at(0).unicode()), character);
    QCOMPARE(toSystemText(text), std::string(1, static_cast<char>(byte)));
  }

  void unrepresentableCharacters_data() {
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("expected");
    QTest::newRow("ideograph") << QString::fromUtf8("a\u4E2Db") << QStringLiteral("a?b");
    QTest::newRow("outside the basic plane is one character")
        << QString::fromUtf8("x\U0001F3B2y") << QStringLiteral("x?y");
    QTest::newRow("C1 control without a byte of its own")
        << QString(QChar(0x0080)) << QStringLiteral("?");
    QTest::newRow("Greek") << QString::fromUtf8("\u03B1\u03B2") << QStringLiteral("??");
    QTest::newRow("plain text stays")
        << QStringLiteral("Sword, 3d6") << QStringLiteral("Sword, 3d6");
  }

  void unrepresentableCharacters() {
    QFETCH(QString, text);
    QFETCH(QString, expected);
    QCOMPARE(toSystemText(text), expected.toStdString());
  }

  void filterStrings_data() {
    QTest::addColumn<QString>("description");
    QTest::addColumn<QString>("patterns");
    QTest::addColumn<QString>("expected");
    QTest::newRow("one pattern") << "Character Sheet"
                                 << "*.chr"
                                 << "Character Sheet (*.chr)";
    QTest::newRow("several patterns") << "Script"
                                      << "*.scp;*.cnv;*.script"
                                      << "Script (*.scp *.cnv *.script)";
    QTest::newRow("blanks around patterns") << "Group"
                                            << " *.group ; *.clist"
                                            << "Group (*.group *.clist)";
    QTest::newRow("everything") << "All Files"
                                << "*"
                                << "All Files (*)";
  }

  void filterStrings() {
    QFETCH(QString, description);
    QFETCH(QString, patterns);
    QFETCH(QString, expected);
    zv::FileFilter filter{toSystemText(description), toSystemText(patterns)};
    QCOMPARE(zv::ui::qtFilterString(filter), expected);
  }

  void nativePathsKeepTheirBytes() {
    // File names are the platform's bytes (UTF-8 here), not Windows-1252.
    std::string path = "/tmp/caf\xC3\xA9.chr";
    QCOMPARE(zv::ui::fromNativePath(path), QString::fromUtf8("/tmp/caf\u00E9.chr"));
    QCOMPARE(zv::ui::toNativePath(zv::ui::fromNativePath(path)), path);
  }
};

QTEST_MAIN(TextCodecTest)
#include "text_codec_test.moc"
