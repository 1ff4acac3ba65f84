#!/bin/sh
# Installs a build into a temporary prefix and checks what a desktop needs:
# the program, a valid menu entry, file types the MIME database accepts with
# their icons, the activation file naming the installed program; then makes
# the Debian package and checks its contents and dependencies.
# Usage: check-install.sh BUILD-DIR
set -eu
build=$1
root=$(mktemp -d)
trap 'rm -rf "$root"' EXIT
prefix=$root/usr

fail() { echo "FAIL: $*" >&2; exit 1; }

cmake --install "$build" --prefix "$prefix" >/dev/null
[ -x "$prefix/bin/quillmere-pad" ] || fail "no program in bin/"
"$prefix/bin/quillmere-pad" --version | grep -q . || fail "the installed program does not start"

desktop=$prefix/share/applications/org.quillmere.QuillmerePad.desktop
[ -f "$desktop" ] || fail "no desktop file"
if command -v desktop-file-validate >/dev/null 2>&1; then
    desktop-file-validate "$desktop" || fail "desktop file not valid"
else
    fail "desktop-file-validate is missing (Debian package desktop-file-utils)"
fi
grep -q '^Exec=quillmere-pad %F$' "$desktop" || fail "desktop file does not pass files"

mime=$prefix/share/mime
[ -f "$mime/packages/quillmere-pad.xml" ] || fail "no MIME types"
update-mime-database "$mime" || fail "the MIME database refuses the types"
for ext in qmw qmb qme qmt qma; do
    grep -q "\*\.$ext\$" "$mime/globs2" || fail "*.$ext is not a known type"
    type=$(grep "\*\.$ext\$" "$mime/globs2" | cut -d: -f2)
    grep -q "$type" "$desktop" || fail "the desktop file does not open $type"
done
icons=$prefix/share/icons/hicolor/scalable
[ -f "$icons/apps/quillmere-pad.svg" ] || fail "no program icon"
for icon in $(sed -n 's/.*<icon name="\([^"]*\)".*/\1/p' "$mime/packages/quillmere-pad.xml" | sort -u); do
    [ -f "$icons/mimetypes/$icon.svg" ] || fail "no icon $icon"
done

service=$prefix/share/dbus-1/services/org.quillmere.QuillmerePad.service
[ -f "$service" ] || fail "no activation file"
grep -qx "Exec=$prefix/bin/quillmere-pad --automation" "$service" ||
    fail "the activation file does not name the installed program: $(grep Exec "$service")"

# The Debian package of the same files.
command -v dpkg-deb >/dev/null 2>&1 || fail "dpkg-deb is missing"
(cd "$root" && cpack -G DEB --config "$build/CPackConfig.cmake" -B "$root/package" >/dev/null) ||
    fail "cpack could not make the package"
deb=$(ls "$root"/package/*.deb)
dpkg-deb -c "$deb" > "$root/contents"
for file in ./usr/bin/quillmere-pad ./usr/share/applications/org.quillmere.QuillmerePad.desktop \
    ./usr/share/mime/packages/quillmere-pad.xml ./usr/share/icons/hicolor/scalable/apps/quillmere-pad.svg \
    ./usr/share/dbus-1/services/org.quillmere.QuillmerePad.service; do
    grep -q " $file\$" "$root/contents" || fail "the package lacks $file"
done
# The package installs under /usr, and its activation file must say so.
dpkg-deb -x "$deb" "$root/unpacked"
grep -qx "Exec=/usr/bin/quillmere-pad --automation" \
    "$root/unpacked/usr/share/dbus-1/services/org.quillmere.QuillmerePad.service" ||
    fail "the package's activation file does not name /usr/bin/quillmere-pad"
depends=$(dpkg-deb -f "$deb" Depends)
for need in libqt6widgets6 libqt6sql6-sqlite qt6-qpa-plugins; do
    echo "$depends" | grep -q "$need" || fail "the package does not depend on $need: $depends"
done
echo "installed and packaged: $(basename "$deb")"
