#!/bin/sh
# Audits the configurations that fleet.txt lists in a hundred tasks:  sbatch --array=1-100 examples/slurm-array.sh
# A task that something was in the way of (6) goes back to the queue, at most three times.
#SBATCH --job-name=infraconvert-audit
#SBATCH --cpus-per-task=1
#SBATCH --requeue
part=parts/$(printf '%03d' "$SLURM_ARRAY_TASK_ID").jsonl
split -n "l/$SLURM_ARRAY_TASK_ID/$SLURM_ARRAY_TASK_COUNT" fleet.txt |
  infraconvert audit --mask --from '4.1(2)' --to '5.0(3)' --jobs 1 --details --format jsonl --files-from - >"$part"
status=$?
case $status in
  1 | 4 | 5) exit 0 ;; # findings, failed and unusable configurations stand in the part
  6) [ "${SLURM_RESTART_COUNT:-0}" -lt 3 ] && scontrol requeue "${SLURM_ARRAY_JOB_ID}_$SLURM_ARRAY_TASK_ID" ;;
esac
exit $status
