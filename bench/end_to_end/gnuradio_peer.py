#!/usr/bin/env python3
"""Cuts channels out of a 16-bit recording with GNU Radio, in one flow graph that reads the recording once.

    gnuradio_peer.py FORM RECORDING OFFSET FRAMES RATE SHIFT:WIDTH:OUTPUT...

OFFSET and FRAMES tell where the samples stand in RECORDING (bytes, I/Q pairs), SHIFT is a channel's centre minus that
of the recording and WIDTH its sample rate, a whole fraction of RATE, both in Hz. OUTPUT becomes raw 16-bit I/Q. Prints
one JSON object with the wall and CPU time of the flow graph alone: loading Python and designing filters is not in it.

The forms:
xlating         freq_xlating_fir_filter_ccc: shift, filter and decimation in one step
stages          rotator, then decimating FIR filters one after the other, of which all but the last stop only what would
                fold into the channel
stages-buffers  the same with buffers of 256 Ki samples at the input's rate instead of the 8 Ki that GNU Radio chooses by
                itself, so that threads hand over less often
All stop 100 dB with Kaiser windows and pass 0.45 of the output rate either side, with a transition of 0.1 of it.
"""

import functools
import json
import math
import sys
import time

from gnuradio import blocks, fft, filter, gr
from gnuradio.filter import firdes

ATTENUATION = 100  # dB
PASS_EDGE = 0.45  # of the output rate
TRANSITION = 0.1
LARGE_BUFFER = 1 << 18  # samples


def low_pass(rate, pass_edge, stop_edge):
    return firdes.low_pass_2(
        1.0, rate, 0.5 * (pass_edge + stop_edge), stop_edge - pass_edge, ATTENUATION, fft.window.WIN_KAISER)


def transition_of(decimation, factor):
    """Of a stage that decimates by `factor` when `decimation` is still to be done, in cycles per sample of its input."""
    last = factor == decimation
    return TRANSITION / decimation if last else 1.0 / factor - 2.0 * PASS_EDGE / decimation


# What an output sample of a stage costs beside its taps, in taps: mostly handing samples from thread to thread. With
# this, the order of the costs below is that of the times measured.
OUTPUT_COST = 60


@functools.cache
def best_factors(decimation, most_stages=3):
    """The cheapest stages, and their cost per input sample in taps. The length of a filter is that of Kaiser's formula.
    """

    def cost(factor):
        taps = (ATTENUATION - 7.95) / 14.36 / transition_of(decimation, factor)
        return (taps + OUTPUT_COST) / factor

    best = [decimation], cost(decimation)
    if most_stages > 1:
        for factor in range(2, decimation // 2 + 1):
            if decimation % factor == 0:
                rest, rest_cost = best_factors(decimation // factor, most_stages - 1)
                best = min(best, ([factor] + rest, cost(factor) + rest_cost / factor), key=lambda plan: plan[1])
    return best


def xlating(rate, shift, width):
    taps = low_pass(rate, PASS_EDGE * width, (PASS_EDGE + TRANSITION) * width)
    return [filter.freq_xlating_fir_filter_ccc(rate // width, taps, shift, rate)]


def stages(rate, shift, width):
    chain = [blocks.rotator_cc(-2.0 * math.pi * shift / rate)]
    decimation = rate // width
    for factor in best_factors(decimation)[0]:
        stop_edge = PASS_EDGE * width + transition_of(decimation, factor) * rate
        chain.append(filter.fir_filter_ccf(factor, low_pass(rate, PASS_EDGE * width, stop_edge)))
        rate //= factor
        decimation //= factor
    return chain


def main():
    form, recording, offset, frames, rate = sys.argv[1:6]
    offset, frames, rate = int(offset), int(frames), int(rate)
    make_chain = {"xlating": xlating, "stages": stages, "stages-buffers": stages}[form]

    graph = gr.top_block()
    # Its offset counts items, and headers are a whole number of I or Q values long.
    source = blocks.file_source(gr.sizeof_short, recording, False, offset // 2, 2 * frames)
    samples = blocks.interleaved_short_to_complex(False, False)
    graph.connect(source, samples)
    at_input_rate = [samples]
    for channel in sys.argv[6:]:
        shift, width, output = channel.split(":", 2)
        chain = make_chain(rate, int(shift), int(width))
        sink = blocks.file_sink(gr.sizeof_short, output, False)
        graph.connect(samples, *chain, blocks.complex_to_interleaved_short(False), sink)
        at_input_rate.append(chain[0])
    if form == "stages-buffers":
        source.set_min_output_buffer(2 * LARGE_BUFFER)
        for block in at_input_rate:
            block.set_min_output_buffer(LARGE_BUFFER)

    wall, cpu = time.perf_counter(), time.process_time()
    graph.run()
    print(json.dumps({"wall": time.perf_counter() - wall, "cpu": time.process_time() - cpu}))


main()
