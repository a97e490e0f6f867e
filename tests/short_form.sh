# What `./test KIND short` leaves out: tests that take long in a build of that kind and would hardly see more there than
# those that are left. Sourced by test. Each is a pattern of names of tests.

# Numbers to the last digit, of samples that others pass through the same code, and steps by the dozen of a person.
long_anywhere=(
  'Demo\.'
  'EntryListCost\.'
  'OutputStretchTest\.OfAny'
  'RecordingOverview\.(BurstOf|CallsCome|Carrier|LongTransformsAreMadeOnASlow|SlowDisk|Sweep)'
  'RecordingScan\.(ACarrierOf|AStrongBurst|NoiseAlone)'
  'SpectrumConverter\.GivesTheSamples'
  'StretchesOf\.'
  'e2e\.test_cut\.TestWideOutputs'
  'e2e\.test_dialog_jobs_posix\.'
  'e2e\.test_doctor'
  'e2e\.test_picture_stops'
  'e2e\.test_scan\.'
  'ui\.accessibility'
  'ui\.log_list'
  'ui\.spectrum_move'
)

# What a program says, and every kind of input once more by the built program: the parts that read them have tests of
# their own.
long_asan=(
  'Damages\.'
  'ExhaustedMemory'
  'LimitsTest\.EntriesForWhich'
  'Response\.'
  'SetsInTimeZone\.[AP]'
  'SignalGenerator\.KeepsItsPhaseFar'
  'e2e\.test_cluster_lies\.TestInputsOfAllKinds'
  'e2e\.test_impossible_dates\.'
  'e2e\.test_other_programs\.'
  'e2e\.test_sets\.TestChainsOf'
  'e2e\.test_shown_texts'
  'e2e\.test_synth_programs\.'
  'e2e\.test_time_zones'
  'ui\.dialog_start_waiting'
)

# Bytes of outputs and words, whichever thread they come from.
long_tsan=(
  'JobWithoutMemoryTest\.No'
  'OutputBufferTest\..*MovesNoEnd'
  'OverviewCacheTest\.(File|Second)'
  'ReaderWriterTest\.(PartsEnd|SavingEarly|SplitOutput)'
  'e2e\.test_cluster\.TestPlans'
  'e2e\.test_readme'
  'e2e\.test_sigmf_inputs\.'
  'e2e\.test_terminal_posix\.'
  'ui\.dialog_log'
  'ui\.dialog_repair'
)

# Programs that are started by the dozen, which takes longest there.
long_windows=(
  'e2e\.test_impossible_dates\.'
  'e2e\.test_synth_programs\.'
)

# left_out_of_short KIND: as CTest takes it.
left_out_of_short() {
  local -n of_kind=long_$1
  local IFS='|'
  echo "${long_anywhere[*]}|${of_kind[*]}"
}
