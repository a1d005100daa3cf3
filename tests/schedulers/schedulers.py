"""The schedulers that give out the parts of examples/cluster, as the check uses them."""

import os
import secrets
import socket
import subprocess
import time

PATIENCE = 120  # seconds that anything may take


def wait_until(condition, what):
    """Waits until the condition holds, and fails when it never does."""
    deadline = time.monotonic() + PATIENCE
    while not condition():
        if time.monotonic() > deadline:
            raise RuntimeError(f"waited in vain: {what}")
        time.sleep(0.05)


def free_ports(count):
    sockets = [socket.socket() for _ in range(count)]
    for one in sockets:
        one.bind(("127.0.0.1", 0))
    ports = [one.getsockname()[1] for one in sockets]
    for one in sockets:
        one.close()
    return ports


class Parallel:
    """GNU parallel, which gives out parts to the processors of this machine."""

    name = "parallel"

    def __init__(self, folder, environment):
        self.folder = folder
        self.environment = environment

    def start(self, numbers):
        """Starts the tasks of these parts and does not wait for them."""
        command = ["parallel", "--will-cite", "./part", ":::", *map(str, numbers)]
        self.tasks = subprocess.Popen(command, cwd=self.folder, env=self.environment, start_new_session=True,
                                      stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)

    def wait(self):
        self.tasks.wait(PATIENCE)
        self.kill_processes()  # what a task has left behind

    def kill(self):
        """Kills the tasks with all their processes, which get no word of it."""
        self.kill_processes()
        self.tasks.wait(PATIENCE)

    def kill_processes(self):
        # The session, since each task has a process group of its own.
        subprocess.run(["pkill", "--signal", "KILL", "--session", str(self.tasks.pid)])

    def stop(self):
        pass


class Slurm:
    """Slurm with a controller and one node, which is this machine, in a folder of its own and on ports of its own."""

    name = "slurm"

    def __init__(self, folder, environment):
        self.folder = folder
        place = folder.parent / "slurm-daemons"
        for part in ("", "state", "spool"):
            (place / part).mkdir(mode=0o755)
        self.daemons = []
        self.environment = dict(environment, SLURM_CONF=str(place / "slurm.conf"))
        key = place / "munge.key"
        key.touch(mode=0o600)
        key.write_bytes(secrets.token_bytes(128))
        ports = free_ports(2)
        (place / "slurm.conf").write_text(self.configuration(place, *ports))
        try:
            # By force, since in a folder that others cannot enter its socket is of no use to them, which is right here.
            self.daemon("munged", "--foreground", "--force", f"--key-file={key}", f"--socket={place}/munge.socket",
                        f"--pid-file={place}/munged.pid", f"--log-file={place}/munged.log",
                        f"--seed-file={place}/munged.seed")
            wait_until((place / "munge.socket").exists, "munged")
            self.daemon("slurmctld", "-D")
            self.daemon("slurmd", "-D")
            wait_until(lambda: self.ask("sinfo", "--noheader", "--format=%T") == "idle", "a node of Slurm that is idle")
        except BaseException:
            self.stop()
            raise

    @staticmethod
    def configuration(place, controller_port, node_port):
        user = subprocess.check_output(["id", "-un"], text=True).strip()
        host = socket.gethostname().split(".")[0]
        return f"""\
ClusterName=parts
SlurmctldHost={host}(127.0.0.1)
SlurmctldPort={controller_port}
SlurmdPort={node_port}
SlurmUser={user}
SlurmdUser={user}
AuthInfo=socket={place}/munge.socket
StateSaveLocation={place}/state
SlurmdSpoolDir={place}/spool
SlurmctldPidFile={place}/slurmctld.pid
SlurmdPidFile={place}/slurmd.pid
SlurmctldLogFile={place}/slurmctld.log
SlurmdLogFile={place}/slurmd.log
MpiDefault=none
ProctrackType=proctrack/linuxproc
TaskPlugin=task/none
SelectType=select/cons_tres
SelectTypeParameters=CR_Core
# The memory that a task for eleven vertices asks for, which this machine may not have.
SlurmdParameters=config_overrides
SchedulerParameters=batch_sched_delay=0,sched_interval=1
NodeName={host} NodeAddr=127.0.0.1 CPUs={os.cpu_count()} RealMemory=16384 State=UNKNOWN
PartitionName=all Nodes=ALL Default=YES State=UP
"""

    def daemon(self, *command):
        # Debian has the daemons where ordinary users do not look.
        environment = dict(self.environment, PATH=f"{self.environment['PATH']}:/usr/sbin")
        self.daemons.append(subprocess.Popen(command, env=environment, stdin=subprocess.DEVNULL,
                                             stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL))

    def ask(self, *command):
        result = subprocess.run(command, cwd=self.folder, env=self.environment, capture_output=True, text=True)
        self.errors = result.stderr
        return result.stdout.strip()

    def start(self, numbers):
        """Submits the tasks of these parts as one array, for one processor each, and does not wait for them."""
        array = ",".join(map(str, numbers))
        self.job = self.ask("sbatch", "--parsable", "--cpus-per-task=1", f"--array={array}", "array.sbatch")
        if not self.job:
            raise RuntimeError(f"no job: {self.errors}")

    def wait(self):
        wait_until(lambda: not self.ask("squeue", "--noheader", f"--jobs={self.job}"), f"job {self.job}")

    def kill(self):
        """Kills the tasks with all their processes, which get no word of it."""
        self.ask("scancel", "--full", "--signal=KILL", self.job)
        self.wait()

    def stop(self):
        for daemon in reversed(self.daemons):
            daemon.terminate()
            daemon.wait(PATIENCE)
