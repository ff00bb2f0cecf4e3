#include "ui/windows/drop_target.h"

#include <QCoreApplication>
#include <QDropEvent>
#include <QMimeData>
#include <QWidget>

#include "tests/ui/ui_fixture.h"
#include "ui/widgets/qt_text.h"

namespace reelvane {
namespace {

class DropTargetTest : public UiFixture {
protected:
    DropTargetTest() {
        new DropTarget(window_, context().controller);
        window_.show();
    }
    template <typename Event>
    bool send(const QByteArray& uriList, Qt::DropActions offered = Qt::CopyAction) {
        QMimeData dragged;
        dragged.setData("text/uri-list", uriList);
        Event event({20, 20}, offered, &dragged, Qt::LeftButton, Qt::NoModifier);
        event.setDropAction(Qt::MoveAction);
        event.ignore();
        QCoreApplication::sendEvent(&window_, &event);
        return event.isAccepted() && event.dropAction() == Qt::CopyAction;
    }
    [[nodiscard]] bool highlighted() const { return window_.findChild<QWidget*>()->isVisible(); }

    QWidget window_;
};

TEST_F(DropTargetTest, WelcomesADragWithAMovieAsACopy) {
    struct Case {
        QByteArray uriList;
        Qt::DropActions offered;
        bool welcome;
    };
    for (const auto& [uriList, offered, welcome] : std::initializer_list<Case>{
             {"file:///a/Film.MKV\r\n", Qt::CopyAction, true},
             {"file:///a/Film.srt\r\nfile:///a/Film.ts\r\n", Qt::CopyAction, true},
             {"file:///a/Film.srt\r\n", Qt::CopyAction, false},
             {"file:///a/Season%201\r\n", Qt::CopyAction, true},
             {"file:///a/notes.txt\r\n", Qt::CopyAction, true},  // and is told to be no movie
             {"https://example.org/Film.mkv\r\n", Qt::CopyAction, false},
             {"file:///a/Film.mkv\r\n", Qt::MoveAction, false},
         }) {
        EXPECT_EQ(send<QDragEnterEvent>(uriList, offered), welcome) << uriList.toStdString();
        EXPECT_EQ(highlighted(), welcome);
    }
}

TEST_F(DropTargetTest, TakesEveryDroppedFileByteForByte) {
    const auto odd = movie("a \xFF #1.mkv");
    const auto second = movie("b.mkv");
    const auto subtitle = platform_.folder.write("a \xFF #1.srt", "{1}{25}Hi\n");
    QByteArray uriList = "# from a file manager\r\n";
    for (const auto& file : {odd, subtitle, second}) uriList += toUrl(file).toEncoded() + "\r\n";
    uriList += "https://example.org/c.mkv\r\n";
    EXPECT_TRUE(send<QDragEnterEvent>(uriList) && send<QDragMoveEvent>(uriList) &&
                send<QDropEvent>(uriList));
    EXPECT_FALSE(highlighted());
    QCoreApplication::processEvents();
    platform_.dispatcher.runPending();
    ASSERT_TRUE(app_->intake().fileInfo());
    EXPECT_EQ(app_->intake().fileInfo()->fileURL, odd);
    EXPECT_EQ(app_->intake().fileInfo()->subtitleFileURL, subtitle);
    EXPECT_EQ(app_->intake().waitingCount().get(), 1);
}

}  // namespace
}  // namespace reelvane
