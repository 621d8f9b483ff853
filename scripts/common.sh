# Shared by ./run and ./check (sourced by bash, in the repository's root).

# Debian packages, every one that the project uses.
packages_build=(g++ cmake ninja-build pkg-config ccache libgl-dev libopengl-dev libegl-dev libx11-dev
    libfreetype-dev libfontconfig-dev libavformat-dev libavcodec-dev
    libavutil-dev libswscale-dev libfast-float-dev libcli11-dev libfmt-dev nlohmann-json3-dev libpng-dev)
packages_drawing=(libgl1 libegl1 libegl-mesa0 libgl1-mesa-dri fontconfig fonts-liberation)
packages_viewer=(qt6-base-dev qt6-qpa-plugins libglfw3-dev libxrandr-dev)
packages_test=(git python3 binutils libgtest-dev libgmock-dev libbenchmark-dev ffmpeg xvfb libxtst-dev
    clang libclang-rt-dev clang-format clang-tidy)
packages_windows=(g++-mingw-w64-x86-64-posix wine64 wine googletest libglx-mesa0)

log_dir=build/logs

say() { printf '%s\n' "$*"; }

# install_packages NAME...: installs those that are missing; costs next to nothing when none is.
install_packages() {
    local -a missing=() root=()
    local installed name
    if ! command -v dpkg-query >/dev/null; then
        say "Not a Debian system: install what is needed by hand ($*)."
        return
    fi
    # dpkg-query fails when it has never heard of one of them; the others are listed all the same.
    installed=" $({ dpkg-query -W -f '${db:Status-Status}:${Package}\n' "$@" 2>/dev/null || true; } |
        sed -n 's/^installed://p' | tr '\n' ' ')"
    for name in "$@"; do
        [[ $installed == *" $name "* ]] || missing+=("$name")
    done
    ((${#missing[@]})) || return 0
    ((EUID == 0)) || root=(sudo)
    local -a apt=("${root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get -qq -o DPkg::Lock::Timeout=300)
    step "Installing ${#missing[@]} Debian packages" packages install_with_apt
}

install_with_apt() {
    printf 'Installing: %s\n' "${missing[*]}"
    "${apt[@]}" update && "${apt[@]}" install -y --no-install-recommends "${missing[@]}"
}

# step TEXT NAME COMMAND...: runs the command with its output in build/logs/NAME.log, tells how long it took, and ends
# the script with the end of the log when it fails, less what only tells of success.
step() {
    local text=$1 log=$log_dir/$2.log start=$SECONDS status=0
    shift 2
    mkdir -p "$log_dir"
    printf '%s ... ' "$text"
    "$@" >"$log" 2>&1 </dev/null || status=$?
    if ((status == 0)); then
        printf 'done (%d s)\n' $((SECONDS - start))
        return
    fi
    printf 'FAILED (%d s)\n' $((SECONDS - start))
    { grep -vE '^ +Start +[0-9]|Passed +[0-9.]+ sec$' "$log" || true; } | tail -n 200
    say "The whole log: $PWD/$log"
    exit 1
}

# build PRESET [TARGET...]: configures when that was not done yet (the build itself notices later changes) and builds.
build() {
    local preset=$1
    shift
    [[ -f build/$preset/build.ninja ]] || cmake --preset "$preset" "${configure_options[@]}" || return
    cmake --build "build/$preset" ${1:+--target "$@"} -- --quiet
}
configure_options=()
