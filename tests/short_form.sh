# What `./test KIND short` leaves out: what takes longest in a build of that kind, while others that are left go through the
# same code. Sourced by test. `./test KIND` runs all of it. Patterns of names of tests, as CTest takes them.

# Numbers to the last digit over many samples, and what hundreds of starts, outputs or steps of a person take.
long_anywhere=(
  'Demo\.'
  'EntryListCost\.'
  'OutputStretchTest\.OfAny'
  'RecordingOverview\.(BurstOf|CallsCome|Carrier|LongTransformsAreMadeOnASlow|SlowDisk|Sweep)'
  'RecordingScan\.(ACarrierOf|AStrongBurst|NoiseAlone)'
  'SpectrumConverter\.GivesTheSamples'
  'StretchesOf\.'
  'e2e\.test_cluster\.TestSplitJoins'
  'e2e\.test_cluster_lies\.TestManyOutputs'
  'e2e\.test_cut\.TestWideOutputs'
  'e2e\.test_dialog_jobs_posix\.'
  'e2e\.test_names\.TestBatches'
  'e2e\.test_picture_stops'
  'e2e\.test_scan\.'
  'ui\.accessibility'
  'ui\.log_list'
  'ui\.spectrum_move'
)

# Inputs of every kind once more by the built program, where the parts that read them have tests of their own; kills and
# faults, which leave no more to see in memory than other ends do; and waiting.
long_asan=(
  'Damages\..*LargeAndNeverClosed'
  'Jobs/ExhaustedMemory\.EndsIn'
  'ExhaustedMemoryOfTheParts\.'
  'LimitsTest\.EntriesForWhich'
  'Response\.'
  'SetsInTimeZone\.[AP]'
  'SignalGenerator\.KeepsItsPhaseFar'
  'e2e\.test_broken_files\.'
  'e2e\.test_cluster_lies\.'
  'e2e\.test_cluster_posix\.Test(FaultyDisks|KilledTasks)'
  'e2e\.test_doctor'
  'e2e\.test_finished_outputs_posix\.'
  'e2e\.test_impossible_dates\.'
  'e2e\.test_other_programs\.'
  'e2e\.test_sets\.TestChainsOf'
  'e2e\.test_shown_texts'
  'e2e\.test_synth_programs\.'
  'e2e\.test_time_zones'
  'ui\.dialog_start_waiting'
  'ui\.dialog_unattended'
)

# Jobs, overviews and dialogs whose threads meet as those of others do that are left, with another end or other bytes.
long_tsan=(
  'JobWithoutMemoryTest\.[NO]'
  'OutputBufferTest\.'
  'OverviewCacheTest\.(File|Second)'
  'ReaderWriterTest\.(PartsEnd|SavingEarly|SplitOutput)'
  'RecordingOverview\.(WhatCannotBeRead|RowsThatThereWasNoMemory)'
  'e2e\.test_cluster\.TestTasks'
  'e2e\.test_doctor'
  'e2e\.test_readme'
  'e2e\.test_sigmf_inputs\.'
  'e2e\.test_terminal_posix\.'
  'ui\.dialog_log'
  'ui\.dialog_outcome'
  'ui\.dialog_repair'
  'ui\.dialog_start_waiting'
  'ui\.spectrum_turns'
)

# Programs that are started by the dozen, which takes longest there.
long_windows=(
  'e2e\.test_cluster_lies\.TestTamperedPlans'
  'e2e\.test_impossible_dates\.'
  'e2e\.test_synth_programs\.'
)

# Cases of the test programs, each of which is one test there: patterns as GoogleTest takes them.
long_cases_windows=(
  'ExhaustedMemoryOfTheParts.*'
  'EntryListCost.*'
  'Jobs/ExhaustedMemory.EndsIn*'
  'OutputStretchTest.OfAny*'
  'RecordingOverview.BurstOf*'
  'RecordingOverview.CallsCome*'
  'RecordingOverview.Carrier*'
  'RecordingOverview.LongTransformsAreMadeOnASlow*'
  'RecordingOverview.SlowDisk*'
  'RecordingOverview.Sweep*'
  'RecordingScan.ACarrierOf*'
  'RecordingScan.AStrongBurst*'
  'RecordingScan.NoiseAlone*'
  'SpectrumConverter.GivesTheSamples*'
  '*Damages.*/LargeAndNeverClosed'
  '*Response.*'
  '*StretchesOf.*'
)

# What a short form must never leave out, for nothing else there goes through it: each a pattern of which a test is left.
never_left_out=(
  'e2e\.test_cut\.TestCutOfTwoFileSet'
  'e2e\.test_cluster\.TestJoins'
  'e2e\.test_cluster\.TestPlans'
  'e2e\.test_cut\.TestEngines'
  'e2e\.test_dialog_posix\.TestDialog'
  'ExhaustedMemory'
  'GroupTest\.'
  'ReaderWriterTest\.'
  'RecordingOverview\.PictureIsTheSame'
  'SideBySide'
  'ui\.dialog_job'
)

# cases_left_out_of_short KIND: as GoogleTest takes it, and nothing where each case is a test of CTest's.
cases_left_out_of_short() {
  [ "$1" = windows ] || return 0
  local IFS=:
  echo "-${long_cases_windows[*]}"
}

# left_out_of_short KIND: as CTest takes it.
left_out_of_short() {
  local -n of_kind=long_$1
  local IFS='|'
  echo "${long_anywhere[*]}|${of_kind[*]}"
}
