// Lines of a script that repeats an investigation.

#include "script.h"

#include "commandline.h"
#include "fuzztarget.h"

#include <QCoreApplication>

int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    return startTarget<QCoreApplication>(argc, argv);
}

int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    qint64 number = 0;
    for (const QByteArray &line : InputBytes(data, size).restAsBytes().split('\n')) {
        ++number;
        try {
            const std::optional<ScriptStep> step =
                parseScriptLine(std::string_view(line.constData(), line.size()), QStringLiteral("script"), number);
            if (step) {
                require(step->line == number, "a step knows its line");
                require(step->command->takes(step->arguments.size()),
                        "a step has the arguments that its command takes");
            }
        } catch (const CommandError &error) {
            require(error.text().startsWith(QStringLiteral("script:%1: ").arg(number)), "a message names the line");
        }
    }
    return 0;
}
