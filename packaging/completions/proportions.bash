# Completion of proportions for bash: options, their values, the command's keywords and the names of
# the variables in the data file.

_proportions_options='--counts --list --explain --command --file --query --table --password-file --schema --na
  --delimiter --decimal --encoding --weight --split --split-layout --locale --collapse --bootstrap --seed --format
  --output --width --digits --percent --plot --sentences --advice --progress --help --version -c -f -o'

_proportions_keywords='PROPORTIONS ONESAMPLE PAIREDSAMPLES INDEPENDENTSAMPLES SUCCESS MISSING CRITERIA
  TESTVAL TESTTYPES CITYPES VALUE SELECT SCOPE USERMISSING CILEVEL WITH BY TO ALL NONE PAIRED FIRST
  LAST LEVEL MIDPOINT CUTPOINT ANALYSIS LISTWISE EXCLUDE INCLUDE AGRESTI_COULL ANSCOMBE
  CLOPPER_PEARSON JEFFREYS LOGIT WALD WALDCC WILSON_SCORE WILSON_SCORECC EXACT MIDP SCORE SCORECC
  AGRESTI_MIN BONETT_PRICE NEWCOMBE MCNEMAR MCNEMARCC AGRESTI_CAFFO BROWN_LI_JEFFREYS HAUCK_ANDERSON
  NEWCOMBECC WALDH0 WALDH0CC'

# The names of the variables, when one of the words is a data file.
_proportions_variables() {
  local word
  for word in "${COMP_WORDS[@]:1}"; do
    case $word in
      *.csv | *.tsv | *.parquet | *.json | *.jsonl | *.ndjson | *.dta | *.sas7bdat | *.xpt | *.csv.gz | *.tsv.gz)
        timeout 3 "${COMP_WORDS[0]}" --list --format json -- "$word" 2> /dev/null |
          grep -o '"name":"[^"]*"' | cut -d '"' -f 4
        return
        ;;
    esac
  done
}

# Candidates for the last word of a list whose words end at one of the given characters.
_proportions_complete_last() {
  local ends=$1 candidates=$2 last=$3 head
  while [[ $last == *[$ends]* ]]; do last=${last#*[$ends]}; done
  head=${3%"$last"}
  COMPREPLY=($(compgen -W "$candidates" -- "$last"))
  COMPREPLY=("${COMPREPLY[@]/#/$head}")
  compopt -o nospace 2> /dev/null
}

_proportions() {
  local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD - 1]}
  if [[ $word == '=' ]]; then word=; elif [[ $before == '=' ]]; then before=${COMP_WORDS[COMP_CWORD - 2]}; fi
  COMPREPLY=()
  case $before in
    -c | --command)
      word=${word#[\"\']}
      _proportions_complete_last ' =(,/' "$_proportions_keywords $(_proportions_variables)" "$word"
      ;;
    --weight) COMPREPLY=($(compgen -W "$(_proportions_variables)" -- "$word")) ;;
    --split) _proportions_complete_last ',' "$(_proportions_variables)" "$word" ;;
    --help) COMPREPLY=($(compgen -W "methods success $_proportions_keywords" -- "$word")) ;;
    --split-layout) COMPREPLY=($(compgen -W 'rows tables' -- "$word")) ;;
    --collapse | --progress) COMPREPLY=($(compgen -W 'auto always never' -- "$word")) ;;
    --advice) COMPREPLY=($(compgen -W 'auto never' -- "$word")) ;;
    --format) COMPREPLY=($(compgen -W 'text markdown html json csv' -- "$word")) ;;
    --counts | --query | --table | --na | --delimiter | --decimal | --encoding | --locale | --width | --digits) ;;
    *)
      if [[ $word == -* && $before != -o && $before != -f ]]; then
        COMPREPLY=($(compgen -W "$_proportions_options" -- "$word"))
      else
        COMPREPLY=($(compgen -f -- "$word"))
        compopt -o filenames 2> /dev/null
      fi
      ;;
  esac
}

complete -F _proportions proportions
