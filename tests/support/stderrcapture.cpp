// Lets the descriptor of the standard error stream be a temporary file for a while.

#include "stderrcapture.h"

#include <QtGlobal>

#include <cstdio>
#include <iostream>
#include <unistd.h>

StderrCapture::StderrCapture()
{
    if (!file.open()) {
        qFatal("no temporary file for the standard error stream");
    }
    std::cerr.flush();
    std::fflush(stderr);
    savedDescriptor = dup(STDERR_FILENO);
    dup2(file.handle(), STDERR_FILENO);
}

StderrCapture::~StderrCapture()
{
    restore();
}

QByteArray StderrCapture::take()
{
    restore();
    file.seek(0);
    return file.readAll();
}

void StderrCapture::restore()
{
    if (savedDescriptor < 0) {
        return;
    }
    std::cerr.flush();
    std::fflush(stderr);
    dup2(savedDescriptor, STDERR_FILENO);
    close(savedDescriptor);
    savedDescriptor = -1;
}
