#include "spell/modSpellMDBResource.h"

#include "context/AppContext.h"
#include "platform/errorClass.h"
#include "platform/fileControl.h"

#include <QFile>

namespace {

// The resources of a static library are registered by hand before first
// use; the macro must stand outside any namespace.
void registerSpellResources();

const QString kModule = QStringLiteral("QuillmerePad.exe-modSpellMDBResource-");
constexpr int kResourceNotFound = 326;

} // namespace

static void initSpellResources() {
    Q_INIT_RESOURCE(spell_wordlist);
}

namespace {
void registerSpellResources() {
    static const bool done = [] {
        initSpellResources();
        return true;
    }();
    (void)done;
}
} // namespace

QByteArray loadResourceBytes(int id, const QString& type) {
    registerSpellResources();
    QFile resource(QStringLiteral(":/%1/%2").arg(type).arg(id));
    if (!resource.open(QIODevice::ReadOnly)) {
        throw QmError(kResourceNotFound,
                      QStringLiteral("Resource with identifier '%1' not found").arg(id));
    }
    return resource.readAll();
}

void buildFileFromResource(const QString& file, int id, const QString& type) {
    ProcedureScope scope(app().errors, kModule + QStringLiteral("buildFileFromResource"));
    const QByteArray bytes = loadResourceBytes(id, type);
    if (!fileControl::writeFileAtomically(file, bytes)) {
        throw QmError(QmError::PathFileAccessError,
                      QStringLiteral("Path/File access error: ") + file);
    }
    doEventsIfInputPending();
    doEventsIfInputPending();
}
