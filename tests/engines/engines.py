"""The SQL engines, as the check uses them."""

import os
import socket
import subprocess
import time


def statements(text):
    """The statements of a script that tav sql wrote, with their comments: each ends with a semicolon at the end of a
    line."""
    lines = []
    for line in text.split("\n"):
        lines.append(line)
        if line.endswith(";") and not line.startswith("--"):
            yield "\n".join(lines).removesuffix(";")
            lines = []


def is_question(statement):
    lines = [line for line in statement.split("\n") if line and not line.startswith("--")]
    return lines[0].startswith("SELECT")


class DuckDb:
    name = "duckdb"
    most_graphs = 10  # of a usual random database
    commands_at_once = 99  # all that there are
    slices = [1, 2, 5, 100]

    def __init__(self):
        import duckdb

        self.connection = duckdb.connect()
        self.connection.execute("SET threads = 1")
        self.failure = duckdb.Error
        self.question = duckdb.StatementType.SELECT

    def run(self, text):
        """Runs a script and returns the rows of its questions, one behind the other."""
        rows = []
        for statement in self.connection.extract_statements(text):
            result = self.connection.execute(statement)
            if statement.type == self.question:
                rows += result.fetchall()
        return rows

    def ask(self, question):
        return self.connection.execute(question).fetchall()

    def saved(self, path):
        return path.read_text()

    def stop(self):
        self.connection.close()


def free_port():
    with socket.socket() as one:
        one.bind(("127.0.0.1", 0))
        return one.getsockname()[1]


class Spark:
    """A cluster of a master and two workers, and a session that is connected to it. A statement takes a hundred times as
    long as with DuckDB, whatever the database is."""

    name = "spark"
    most_graphs = 10
    commands_at_once = 2
    slices = [5, 100]
    start_sooner = "-XX:TieredStopAtLevel=1 -XX:+UseSerialGC"  # of Java, whose own choices are made for long runs

    def __init__(self, folder):
        import pyspark

        self.folder = folder
        self.home = os.path.dirname(pyspark.__file__)
        self.processes = []
        self.session = None
        self.failure = Exception  # whatever the Java virtual machine throws
        try:
            self.start_cluster()
            self.start_session()
        except BaseException:
            self.stop()
            raise

    def start_cluster(self):
        port = free_port()
        self.master = f"spark://127.0.0.1:{port}"
        self.start("master", "master", "--host", "127.0.0.1", "--port", str(port), "--webui-port", "0")
        self.wait_for("master", "I have been elected leader")
        workers = ["worker-1", "worker-2"]
        for worker in workers:
            self.start("worker", worker, "--host", "127.0.0.1", "--cores", "1", "--memory", "1g", "--webui-port", "0",
                       self.master)
        for worker in workers:
            self.wait_for(worker, "Successfully registered with master")

    def start(self, kind, name, *arguments):
        """Starts a process of the cluster, which writes into the file NAME.log."""
        environment = dict(os.environ, SPARK_LOCAL_IP="127.0.0.1", SPARK_HOME=self.home, SPARK_DAEMON_MEMORY="512m",
                           SPARK_DAEMON_JAVA_OPTS=self.start_sooner, SPARK_WORKER_DIR=str(self.folder / "work"))
        program = f"org.apache.spark.deploy.{kind}.{kind.capitalize()}"
        with open(self.folder / f"{name}.log", "w") as log:
            self.processes.append(subprocess.Popen([os.path.join(self.home, "bin", "spark-class"), program, *arguments],
                                                   stdout=log, stderr=subprocess.STDOUT, env=environment))

    def wait_for(self, name, text):
        path = self.folder / f"{name}.log"
        for _ in range(1800):
            if text in path.read_text():
                return
            time.sleep(0.1)
        raise RuntimeError(f"{name} has not started:\n{path.read_text()}")

    def start_session(self):
        from pyspark.sql import SparkSession

        os.environ.update(SPARK_LOCAL_IP="127.0.0.1", SPARK_HOME=self.home)
        settings = {"spark.executor.memory": "600m", "spark.driver.memory": "1g", "spark.driver.host": "127.0.0.1",
                    "spark.driver.extraJavaOptions": self.start_sooner,
                    "spark.executor.extraJavaOptions": self.start_sooner, "spark.locality.wait": "0s",
                    "spark.scheduler.minRegisteredResourcesRatio": "1.0",
                    "spark.ui.enabled": "false", "spark.ui.showConsoleProgress": "false",
                    "spark.sql.shuffle.partitions": "2", "spark.default.parallelism": "2",
                    "spark.sql.catalogImplementation": "in-memory",
                    "spark.sql.warehouse.dir": str(self.folder / "warehouse")}
        builder = SparkSession.builder.master(self.master).appName("tavoline")
        for key, value in settings.items():
            builder = builder.config(key, value)
        self.session = builder.getOrCreate()
        self.session.sparkContext.setLogLevel("OFF")

    def workers(self):
        """How many processes execute the tasks of the session."""
        return self.session.sparkContext._jsc.sc().getExecutorMemoryStatus().size() - 1  # less the driver

    def run(self, text):
        rows = []
        for statement in statements(text):
            result = self.session.sql(statement)
            if is_question(statement):
                rows += [tuple(row) for row in result.collect()]
        if self.workers() != 2:
            raise RuntimeError(f"{self.workers()} workers, and not 2")
        return rows

    def ask(self, question):
        return [tuple(row) for row in self.session.sql(question).collect()]

    def saved(self, path):
        """A folder of files, one behind the other."""
        return "".join(part.read_text() for part in sorted(path.glob("part-*")))

    def stop(self):
        if self.session is not None:
            self.session.stop()
        for process in reversed(self.processes):
            process.terminate()
        for process in self.processes:
            process.wait()
