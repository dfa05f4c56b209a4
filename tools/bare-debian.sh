# Shared by the scripts that try the project in a bare Debian, which source it after tools/prepare.sh. Needs root.

# Where this machine gets Debian from.
mirror() {
    apt-get indextargets --format '$(SITE)' 'Created-By: Packages' 'Origin: Debian' 'Label: Debian' | head -n 1
}

makeBareDebian() { # the suite, an empty folder, more options of debootstrap
    say "Making a bare Debian ($1) in $2"
    quietly debootstrap --variant=minbase "${@:3}" "$1" "$2" "$(mirror)" || fail "debootstrap failed."
}

# Runs a program in the bare Debian, with none of this machine's environment but how it reaches the network.
inBareDebian() { # its folder, variables and the words of the program as env takes them
    chroot "$1" env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin HOME=/root LC_ALL=C.UTF-8 \
        ${http_proxy:+"http_proxy=$http_proxy"} ${https_proxy:+"https_proxy=$https_proxy"} "${@:2}"
}
