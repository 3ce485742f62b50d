#pragma once
#include <QImage>

#include "platform/Previews.h"

/// Pictures that Qt's readers know, made smaller to fit a square of so many pixels; one that is too
/// large to be read at all gives its dimensions and a message.
/// Threads: the decoder's, after a QCoreApplication is made; drawings need a QGuiApplication.
void readPicture(int handle, uint32_t pixels, Preview& preview);
std::shared_ptr<const Picture> toPicture(const QImage& image, uint32_t pixels);
