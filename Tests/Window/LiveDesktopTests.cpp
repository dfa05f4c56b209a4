#include "Services/LiveDesktop.h"
#include "Support/TemporaryFolder.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <QtTest/QTest>

namespace orbel::test {

namespace {

/// A desktop whose opener ends with this status.
class OpenerInPath {
public:
    explicit OpenerInPath(int status) {
        const auto opener = folder_.file("xdg-open", "#!/bin/sh\nexit " + std::to_string(status) + "\n");
        std::filesystem::permissions(opener, std::filesystem::perms::owner_all);
        qputenv("PATH", QByteArray::fromStdString(folder_.path()) + ':' + before_);
    }
    ~OpenerInPath() { qputenv("PATH", before_); }
    OpenerInPath(const OpenerInPath&) = delete;
    OpenerInPath& operator=(const OpenerInPath&) = delete;

private:
    TemporaryFolder folder_;
    QByteArray before_ = qgetenv("PATH");
};

} // namespace

TEST(LiveDesktop, SaysWhenNoProgramOpensWhatWasAskedFor) {
    LiveDesktop desktop;
    QStringList said;
    desktop.reportFailure = [&](const QString& words) { said << words; };
    {
        const OpenerInPath opener(4);
        desktop.openTrash("/home/mira/.local/share/Trash/files");
        EXPECT_TRUE(QTest::qWaitFor([&] { return said.size() == 1; }));
        EXPECT_TRUE(said.value(0).contains(QStringLiteral("/home/mira/.local/share/Trash/files")));
        desktop.open("/tmp/notes.pdf");
        EXPECT_TRUE(QTest::qWaitFor([&] { return said.size() == 2; }));
        EXPECT_TRUE(said.value(1).contains(QStringLiteral("/tmp/notes.pdf")));
    }
    const OpenerInPath opener(0);
    desktop.open("/tmp/notes.pdf");
    desktop.openTrash("/nowhere");
    QTest::qWait(300);
    EXPECT_EQ(said.size(), 2);
}

} // namespace orbel::test
