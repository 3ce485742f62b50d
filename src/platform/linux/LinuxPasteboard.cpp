#include "platform/linux/LinuxPasteboard.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>

#include "util/Unicode.h"

void LinuxPasteboard::setString(const std::string& text) {
    auto* const data = new QMimeData;  // the clipboard's
    if (toUtf16(text))
        data->setText(QString::fromStdString(text));
    else  // no text that Qt could keep: as the bytes that it is
        data->setData(QStringLiteral("text/plain"), QByteArray::fromStdString(text));
    QGuiApplication::clipboard()->setMimeData(data);
}
