// SPDX-License-Identifier: MIT
// The peer of the start benchmark: the same job on QPlainTextEdit. Prints a line when its first frame is painted.
#include <QApplication>
#include <QFile>
#include <QFontDatabase>
#include <QPlainTextEdit>
#include <cstdio>

class Viewer : public QPlainTextEdit {
protected:
    void paintEvent(QPaintEvent* event) override
    {
        QPlainTextEdit::paintEvent(event);
        if (!std::exchange(reported_, true))
            QMetaObject::invokeMethod(
                this, [] { std::puts("first-frame"), std::fflush(stdout); }, Qt::QueuedConnection);
    }

private:
    bool reported_ = false;
};

int main(int argumentCount, char** arguments)
{
    QApplication application(argumentCount, arguments);
    QFile file(QString::fromLocal8Bit(arguments[1]));
    if (!file.open(QIODevice::ReadOnly))
        return 1;
    Viewer viewer;
    viewer.setReadOnly(true);
    viewer.setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    viewer.setPlainText(QString::fromUtf8(file.readAll()));
    viewer.resize(800, 600);
    viewer.show();
    return application.exec();
}
