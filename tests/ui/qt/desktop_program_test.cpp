// The desktop program as a process of its own: what it leaves behind and how it ends.
#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QProcessEnvironment>
#include <QTemporaryDir>

#include "tests/ui/qt/file_names.h"

namespace morvex::test {
namespace {

constexpr int kPatience = 60'000;  // milliseconds

class DesktopProgramTest : public testing::Test {
 protected:
  // The program writes in its own folder, so each test has one.
  DesktopProgramTest() {
    EXPECT_TRUE(QFile::copy(MORVEX_DESKTOP_PROGRAM, program_));
    QDir(root_.path()).mkpath("source/sub");
    QDir(root_.path()).mkpath("target");
    Write("source/one.txt", "aca");
    Write("source/sub/two.txt", "aca");
    Write("list.txt", "a|b||\r\n");
    QByteArray settings;
    for (const char* name : {"source", "target", "list.txt"}) {
      settings += NativePath(root_.filePath(name)) + "\r\n";
    }
    Write("settings.dat", settings + "log=1\r\nsep=|\r\njok=*\r\n1.txt\r\n");
  }

  void Write(const char* name, const QByteArray& bytes) {
    QFile file(root_.filePath(name));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(bytes);
  }
  QByteArray Read(const char* name) {
    QFile file(root_.filePath(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
  }

  // The exit status; -1 when the program did not end by itself.
  int Run(const QStringList& arguments) {
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    // The program for Windows holds nothing but what shows windows on a screen.
    environment.insert("QT_QPA_PLATFORM", kNamesAreBytes ? "offscreen" : "windows");
    process.setProcessEnvironment(environment);
    process.start(program_, arguments);
    if (!process.waitForFinished(kPatience) || process.exitStatus() != QProcess::NormalExit) {
      process.kill();
      process.waitForFinished();
      return -1;
    }
    errors_ = process.readAllStandardError();
    return process.exitCode();
  }

  QTemporaryDir root_;
  const QString program_ = root_.filePath(QFileInfo(MORVEX_DESKTOP_PROGRAM).fileName());
  QByteArray errors_;
};

TEST_F(DesktopProgramTest, AnUnattendedRunEndsWithStatus0) {
  EXPECT_EQ(Run({"-if", root_.filePath("settings.dat")}), 0) << errors_.toStdString();
  EXPECT_EQ(Read("target/one.txt"), "bcb");
  EXPECT_EQ(Read("target/sub/two.txt"), "bcb");
  EXPECT_TRUE(Read("Morvex.log").contains("Vervangingen: 4"));
}

TEST_F(DesktopProgramTest, ADelayedRunEndsWithStatus0) {
  EXPECT_EQ(Run({"-if", root_.filePath("settings.dat"), "-dy", "50"}), 0) << errors_.toStdString();
  EXPECT_EQ(Read("target/one.txt"), "bcb");
}

TEST_F(DesktopProgramTest, AMissingSettingsFileEndsWithStatus1) {
  EXPECT_EQ(Run({"-if", root_.filePath("nowhere.dat")}), 1);
  EXPECT_TRUE(Read("Morvex.log").contains("Initialisatiebestand bestaat niet: "));
}

TEST_F(DesktopProgramTest, ADelayThatIsNoNumberEndsWithStatus2) {
  EXPECT_EQ(Run({"-if", root_.filePath("settings.dat"), "-dy", "soon"}), 2);
  EXPECT_TRUE(errors_.contains("Run-time error '13': Type mismatch")) << errors_.toStdString();
  EXPECT_EQ(Read("target/one.txt"), "");
}

TEST_F(DesktopProgramTest, ADelayBeyond16BitsEndsWithStatus2) {
  EXPECT_EQ(Run({"-if", root_.filePath("settings.dat"), "-dy", "40000"}), 2);
  EXPECT_TRUE(errors_.contains("Run-time error '6': Overflow")) << errors_.toStdString();
}

}  // namespace
}  // namespace morvex::test
