# Completion of tav for bash. It does without the package bash-completion.

# _tav_files CURRENT [SUFFIX]: completes to folders and to files, those that end with SUFFIX, a pattern, if it is given.
_tav_files()
{
    compopt -o filenames 2>/dev/null
    mapfile -t COMPREPLY < <({
        compgen -d -- "$1"
        compgen -f -X "!*${2-}" -- "$1"
    } | sort -u)
}

# _tav_words CURRENT WORD...: completes to the words that go on like CURRENT.
_tav_words()
{
    local current=$1
    shift
    mapfile -t COMPREPLY < <(compgen -W "$*" -- "$current")
}

# _tav_operands: counts the words between the command and the current one that are neither options nor their values.
_tav_operands()
{
    local count=0 place
    for ((place = 2; place < COMP_CWORD; ++place)); do
        case ${COMP_WORDS[place]} in
        -o | --output | -j | --jobs | --relation | --base | --table | --first | --parts | --values | --compute | --dialect | \
            --tables | --slice)
            ((++place))
            [[ ${COMP_WORDS[place]} != = ]] || ((++place))
            ;;
        -?*) ;;
        *) ((++count)) ;;
        esac
    done
    echo "$count"
}

# _tav_invariants TAV: prints the names of the invariants.
_tav_invariants()
{
    "$1" invariant --list 2>/dev/null | sed -n 's/^  \([a-z0-9-]*\) .*/\1/p'
}

# _tav_expression CURRENT TAV: completes the last name in an expression, which may stand between quotes.
_tav_expression()
{
    local text=${1#[\'\"]} name
    name=${text##*[!a-z0-9_]}
    mapfile -t COMPREPLY < <(compgen -P "${text%"$name"}" -W "$(_tav_invariants "$2" | tr - _)" -- "$name")
}

_tav()
{
    local tav=${COMP_WORDS[0]/#\~/$HOME} command=${COMP_WORDS[1]}
    local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]}
    # '--relation=edge' comes as three words.
    if [[ $current == = ]]; then
        current=''
    elif [[ $previous == = ]]; then
        previous=${COMP_WORDS[COMP_CWORD - 2]}
    fi
    COMPREPLY=()

    if ((COMP_CWORD == 1)); then
        _tav_words "$current" build export filter index info invariant names run sql -h --help --version
        return
    fi

    local options=(-h --help --version) input='' output=''
    case $command in
    build)
        options+=(--relation --connected --strict --base -o --output -j --jobs)
        input='.[gs]6'
        output=.tav
        ;;
    export)
        options+=(-o --output --parts --values --compute -j --jobs)
        input=.tav
        output=/ # folders only
        ;;
    filter) options+=(--count --first --invert -j --jobs) ;;
    index)
        options+=(-o --output -j --jobs)
        input=.tav
        output=.index
        ;;
    info) input=.tav ;;
    invariant)
        options+=(--list -o --output --table -j --jobs)
        input=.tav
        output=.txt
        ;;
    names)
        options+=(--strict -o --output -j --jobs)
        (($(_tav_operands) == 0)) && input=.tav || input='.[gs]6'
        output=.g6
        ;;
    run) options+=(-q --quiet --part -j --jobs) ;;
    sql)
        options+=(--dialect --tables --slice --sorted -o --output)
        output=.sql
        ;;
    *) return ;;
    esac

    case $previous in
    --relation) _tav_words "$current" vertex edge ;;
    --base) _tav_files "$current" .tav ;;
    --dialect) _tav_words "$current" duckdb spark ;;
    --compute) _tav_words "$current" "$(_tav_invariants "$tav" | tr - _)" ;;
    --values) _tav_files "$current" .txt ;;
    -j | --jobs | --first | --parts | --slice) ;;
    --tables) _tav_files "$current" / ;;
    --table) _tav_files "$current" .tsv ;;
    -o | --output) _tav_files "$current" "$output" ;;
    *)
        if [[ $current == -* ]]; then
            _tav_words "$current" "${options[@]}"
        elif [[ $command == filter && $(_tav_operands) == 0 ]]; then
            _tav_expression "$current" "$tav"
        elif [[ $command == invariant && $current == [\'\"]* ]]; then
            _tav_expression "$current" "$tav"
        elif [[ $command == invariant && $(_tav_operands) == 0 ]]; then
            _tav_words "$current" "$(_tav_invariants "$tav")"
        elif [[ $command == invariant && -n $current ]]; then
            # Another expression or the database.
            _tav_words "$current" "$(_tav_invariants "$tav")"
            local names=("${COMPREPLY[@]}")
            _tav_files "$current" "$input"
            COMPREPLY+=("${names[@]}")
        else
            _tav_files "$current" "$input"
        fi
        ;;
    esac
}

complete -F _tav tav
