#!/bin/sh
# udev-rules.sh: prints the udev rules for the accepted phones.
set -eu
cat <<'TEXT'
# The ports of phones that quillet accepts: access for the logged-in user, but not for ModemManager, which would
# probe them first. The number of this file must be below 73, where access is granted. The diagnostic port starts
# the user's quillet-mount.service, if there is one.
ACTION=="remove", GOTO="quillet_end"
TEXT
"$(dirname "$0")/accepted-ids.sh" | while IFS=: read -r vendor product; do
    cat <<TEXT
SUBSYSTEM=="usb", ENV{DEVTYPE}=="usb_device", ATTR{idVendor}=="$vendor", ATTR{idProduct}=="$product", ENV{ID_MM_DEVICE_IGNORE}="1"
SUBSYSTEM=="tty", SUBSYSTEMS=="usb", ATTRS{idVendor}=="$vendor", ATTRS{idProduct}=="$product", ENV{ID_MM_DEVICE_IGNORE}="1", TAG+="uaccess"
SUBSYSTEM=="tty", SUBSYSTEMS=="usb", ATTRS{idVendor}=="$vendor", ATTRS{idProduct}=="$product", ENV{ID_USB_INTERFACE_NUM}=="01", TAG+="systemd", ENV{SYSTEMD_USER_WANTS}+="quillet-mount.service"
TEXT
done
echo 'LABEL="quillet_end"'
