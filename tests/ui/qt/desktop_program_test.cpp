// The desktop program as a process: the files that it writes and its exit status.
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
  // The program writes to its own folder, so each test runs a copy in a new folder.
  DesktopProgramTest() {
    EXPECT_TRUE(QFile::copy(MORVEX_DESKTOP_PROGRAM, program_));
    QDir(root_.path()).mkpath("source/sub");
    QDir(root_.path()).mkpath("target");
    Write("source/one.txt", "aca");
    Write("source/sub/two.txt", "aca");
    Write("list.txt", "a|b||\r\n");
    WriteSettings("list.txt");
  }

  // `list` is a name in the test's folder or an absolute path.
  void WriteSettings(const QString& list) {
    QByteArray settings;
    for (const QString& name : {QString("source"), QString("target"), list}) {
      settings += NativePath(QDir(root_.path()).absoluteFilePath(name)) + "\r\n";
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

  // Returns the exit status, or -1 if the program crashed or did not end.
  int Run(const QStringList& arguments) {
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    // The program for Windows has no plugin for off-screen windows.
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
  EXPECT_TRUE(errors_.contains("Initialisatiebestand bestaat niet: ")) << errors_.toStdString();
  EXPECT_TRUE(errors_.contains("nowhere.dat")) << errors_.toStdString();
}

// The list's name has more than 255 characters, which the usual file systems refuse, so reading the
// list is an error. A missing list would count as an empty one.
TEST_F(DesktopProgramTest, AListThatCannotBeReadEndsWithStatus1AndSaysWhy) {
  WriteSettings(QString(300, 'x') + ".txt");
  EXPECT_EQ(Run({"-if", root_.filePath("settings.dat")}), 1) << "-1: it did not end";
  EXPECT_TRUE(errors_.contains("The replacement list could not be read to its end: "))
      << errors_.toStdString();
  EXPECT_TRUE(errors_.contains("xxx.txt: Error ")) << errors_.toStdString();
  EXPECT_TRUE(errors_.contains("Nothing was run")) << errors_.toStdString();
  EXPECT_EQ(Read("target/one.txt"), "");
}

// On Linux, reading /proc/self/mem from its beginning always fails.
TEST_F(DesktopProgramTest, AFileThatFailsWhileItIsReadEndsWithStatus1AndSaysWhy) {
  const QString unreadable = "/proc/self/mem";
  if (!QFileInfo(unreadable).isFile()) GTEST_SKIP() << "no file that fails when it is read";
  EXPECT_EQ(Run({"-if", unreadable}), 1) << "-1: it did not end";
  EXPECT_TRUE(errors_.contains("/proc/self/mem: Error 57: Device I/O error"))
      << errors_.toStdString();
  WriteSettings(unreadable);
  EXPECT_EQ(Run({"-if", root_.filePath("settings.dat")}), 1) << "-1: it did not end";
  EXPECT_TRUE(errors_.contains("to its end: /proc/self/mem: Error 57: Device I/O error"))
      << errors_.toStdString();
}

TEST_F(DesktopProgramTest, ANameCannotSteerTheTerminalThatTheReasonGoesTo) {
  Run({"-if", root_.filePath("no\x1b[2Jwhere.dat")});
  EXPECT_TRUE(errors_.contains("no\\x1B[2Jwhere.dat")) << errors_.toStdString();
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
