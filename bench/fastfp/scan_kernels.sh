#!/bin/sh
# Times the scan of files with every bit-count kernel that this processor supports.
#
# usage: scan_kernels.sh QX_FASTFP_BENCH [FUNCTION [OPTION OF GOOGLE BENCHMARK ...]]
# FUNCTION, a regular expression, is Top10 unless given. A kernel is chosen once per process, so each takes one.
# Names hold the kernel that ran: those of one that is not supported here match nothing.
bench=$1
function=${2:-Top10}
[ $# -gt 2 ] && shift 2 || shift $#
[ -x "$bench" ] || { echo "usage: $0 QX_FASTFP_BENCH [FUNCTION [OPTION ...]]" >&2; exit 2; }
for kernel in avx512 avx2 popcnt portable; do
  QX_BITCOUNT_KERNEL=$kernel "$bench" --benchmark_filter="^($function)/$kernel/" "$@" 2>&1 |
    grep -E "^($function)/|QX_BITCOUNT_KERNEL"
done
