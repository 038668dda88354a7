;--------------------------- EXCEPTIONS -----------
CREATE EXCEPTION AUTO_HAS_OWNERS 'Автомобиль имеет владельцев. Удаление запрещено';
CREATE EXCEPTION AUTO_HAS_ORDERS 'По автомобилю имелись заказы. Удаление запрещено';
CREATE EXCEPTION CUST_HAS_ORDERS 'По данному клиенту имеются заказы. Удаление запрещено';
CREATE EXCEPTION ROLE_HAS_USERS 'Имеются пользователи данной роли. Удаление запрещено';
CREATE EXCEPTION STATES_HAS_USERS 'Имеются пользователи с данным статусом. Удаление запрещено';
CREATE EXCEPTION ROLES_ACTIONS_HAS_RIGHTS 'Имеются пользовательские действия с данными правами. Удаление запрещено';
CREATE EXCEPTION CMAT_HAS_DESCENDANTS 'Имеются подчиненные категории материалов. Удаление запрещено';
CREATE EXCEPTION CSERV_HAS_DESCENDANTS 'Имеются подчиненные категории услуг. Удаление запрещено';
CREATE EXCEPTION SERV_HAS_CSERV 'Имеются услуги данной категории. Удаление запрещено';
CREATE EXCEPTION ESTAT_HAS_EMPL 'Имеются сотрудники с данным статусом. Удаление запрещено';
CREATE EXCEPTION POSIT_HAS_EMPL 'Имеются сотрудники с данной должностью. Удаление запрещено';
CREATE EXCEPTION CMAT_HAS_MAT 'Имеются материалы данной категории. Удаление запрещено';
CREATE EXCEPTION PROD_HAS_MAT 'Имеются материалы данного поставщика. Удаление запрещено';
CREATE EXCEPTION CNTRY_HAS_MAT 'Имеются материалы данного производителя. Удаление запрещено';
CREATE EXCEPTION PAYSTATUS_HAS_STOREMAT 'Имеются поставки с данным статусом платежа. Удаление запрещено';
CREATE EXCEPTION OTYPE_HAS_STOREMAT 'Имеются поставки с данным типом складской операции. Удаление запрещено';
CREATE EXCEPTION CUST_HAS_STOREMAT 'Имеются поставки по данному клиенту. Удаление запрещено';
CREATE EXCEPTION STOREMAT_HAS_STORE 'Имеются товраы в данной поставке. Удаление запрещено';
CREATE EXCEPTION MAT_HAS_STORE 'Имеются поставки данного товара. Удаление запрещено';
CREATE EXCEPTION TYPE_HAS_AUTO 'Имеются автомобили данного типа. Удаление запрещено';
CREATE EXCEPTION MODEL_HAS_AUTO 'Имеются автомобили данной модели. Удаление запрещено';
CREATE EXCEPTION MARK_HAS_AUTO 'Имеются автомобили данной марки. Удаление запрещено';
CREATE EXCEPTION YEAR_HAS_AUTO 'Имеются автомобили данного года выпуска. Удаление запрещено';
CREATE EXCEPTION OSTATE_HAS_ORDER 'Имеются заказы данного статуса. Удаление запрещено';
CREATE EXCEPTION PAYSTATE_HAS_ORDER 'Имеются заказы данного платежного статуса. Удаление запрещено';
CREATE EXCEPTION CUST_HAS_ORDER 'Имеются заказы по данному клиенту. Удаление запрещено';
CREATE EXCEPTION AUTO_HAS_ORDER 'Имеются заказы по данному автомобилю. Удаление запрещено';
CREATE EXCEPTION ORDER_HAS_ORDERPARTS 'Имеются заполненные запчасти по данному заказу. Удаление запрещено';
CREATE EXCEPTION ORDSERV_HAS_ORDERS 'В данном заказе имеются услуги. Удаление запрещено';
CREATE EXCEPTION SERV_HAS_ORDERS 'Имеются заказы включающие данную услугу. Удаление запрещено';
CREATE EXCEPTION EMPL_HAS_ORDERS 'Имеются заказы по данному сотруднику. Удаление запрещено';
CREATE EXCEPTION ORDMAT_HAS_ORDERS 'В данном заказе имеются материалы. Удаление запрещено';
CREATE EXCEPTION MAT_HAS_ORDERS 'Имеются заказы включающие данный материал. Удаление запрещено';
CREATE EXCEPTION PTYPE_HAS_PAY 'Имеются платежи данного типа. Удаление запрещено';
CREATE EXCEPTION PURPOSE_HAS_PAY 'Имеются платежи данного направления. Удаление запрещено';
CREATE EXCEPTION CUST_HAS_PAY 'Имеются платежи по данному клиенту. Удаление запрещено';
CREATE EXCEPTION EMPL_HAS_SALARY 'Имеются выплаты по данному сотруднику. Удаление запрещено';
CREATE EXCEPTION ROLES_ACTIONS_NOT_ADDITION 'Добавление новых разрешений не предусмотрено.';
CREATE EXCEPTION ORDER_HAS_PAY 'Имеются платежи по данному заказу. Удаление запрещено';
COMMIT;

;--------------------------- spConfigOpen -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spConfigOpen
RETURNS (
    ID integer,
    PNAME varchar(32),
    PVALUE varchar(1024))
AS
begin
  for select ID, PNAME, PVALUE
      from CONFIG
      into :ID, :PNAME, :PVALUE
  do
    suspend;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spConfigOpen2 -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spConfigOpen2 (
    ANAME varchar(32))
RETURNS (
    ID integer,
    PNAME varchar(32),
    PVALUE varchar(1024))
AS
begin
  for select ID, PNAME, PVALUE
      from CONFIG
      where PNAME = :ANAME
      into :ID, :PNAME, :PVALUE
  do
    suspend;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spConfigEdit -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spConfigEdit (
    OLD_ID integer,
    PNAME varchar(32),
    PVALUE varchar(1024))
RETURNS (
    ID integer)
AS
begin
  update or insert into CONFIG (ID, PNAME, PVALUE)
    values (:OLD_ID, :PNAME, :PVALUE)
    matching (ID)
    returning ID into :ID;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spRolesOpen -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spRolesOpen
RETURNS (
    ID integer,
    ROLENAME varchar(32),
    COMMENT varchar(1024))
AS
begin
  for select ID, ROLENAME, COMMENT
      from ROLES
      into :ID, :ROLENAME, :COMMENT
  do
    suspend;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spRolesEdit -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spRolesEdit (
    OLD_ID integer,
    ROLENAME varchar(32),
    COMMENT varchar(1024))
RETURNS (
    ID integer)
AS
begin
  update or insert into ROLES (ID, ROLENAME, COMMENT)
    values (:OLD_ID, :ROLENAME, :COMMENT)
    matching (ID)
    returning ID into :ID;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spRolesEmpty -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spRolesEmpty
RETURNS (
    ID integer)
AS
begin
  update or insert into ROLES (ID)
    values (null)
    matching (ID)
    returning ID into :ID;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spRolesDel -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spRolesDel (
    ID integer)
AS
begin
  if (exists(select * from USERS where ID_ROLE = :ID)) then
    exception ROLE_HAS_USERS;
  delete from ROLES_ACTIONS where ID_ROLE = :ID;
  delete from ROLES where ID = :ID;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spStatesOpen -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spStatesOpen
RETURNS (
    ID integer,
    STATENAME varchar(32),
    COMMENT varchar(1024))
AS
begin
  for select ID, STATENAME, COMMENT
      from STATES
      into :ID, :STATENAME, :COMMENT
  do
    suspend;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spStatesEdit -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spStatesEdit (
    OLD_ID integer,
    STATENAME varchar(32),
    COMMENT varchar(1024))
RETURNS (
    ID integer)
AS
begin
  update or insert into STATES (ID, STATENAME, COMMENT)
    values (:OLD_ID, :STATENAME, :COMMENT)
    matching (ID)
    returning ID into :ID;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spStatesEmpty -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spStatesEmpty
RETURNS (
    ID integer)
AS
begin
  update or insert into STATES (ID)
    values (null)
    matching (ID)
    returning ID into :ID;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spStatesDel -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spStatesDel (
    ID integer)
AS
begin
  if (exists(select * from USERS where STATE = :ID)) then
    exception STATES_HAS_USERS;
  delete from STATES where ID = :ID;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spUsersOpen -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spUsersOpen
RETURNS (
    ID integer,
    USERNAME varchar(128),
    PASSWORD varchar(128),
    ID_ROLE_LKP_ROLES_F_ROLENAME integer,
    USER_FULL_NAME varchar(255),
    SYS_CREATE_DATE timestamp,
    STATE_LKP_STATES_F_STATENAME integer)
AS
begin
  for select ID,
             USERNAME,
             cast(null as varchar(128)),
             ID_ROLE,
             USER_FULL_NAME,
             SYS_CREATE_DATE,
             STATE
      from USERS
      into :ID, :USERNAME, :PASSWORD, :ID_ROLE_LKP_ROLES_F_ROLENAME, :USER_FULL_NAME,
           :SYS_CREATE_DATE, :STATE_LKP_STATES_F_STATENAME
  do
    suspend;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spUsersEdit -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spUsersEdit (
    OLD_ID integer,
    USERNAME varchar(128),
    PASSWORD varchar(128),
    ID_ROLE_LKP_ROLES_F_ROLENAME integer,
    USER_FULL_NAME varchar(255),
    SYS_CREATE_DATE timestamp,
    STATE_LKP_STATES_F_STATENAME integer)
RETURNS (
    ID integer)
AS
begin
  if (PASSWORD is null or PASSWORD = '') then
    PASSWORD = (select PASSWORD from USERS where ID = :OLD_ID);
  update or insert into USERS (ID, USERNAME, PASSWORD, ID_ROLE, USER_FULL_NAME, SYS_CREATE_DATE, STATE)
    values (:OLD_ID, :USERNAME, :PASSWORD, :ID_ROLE_LKP_ROLES_F_ROLENAME, :USER_FULL_NAME, :SYS_CREATE_DATE, :STATE_LKP_STATES_F_STATENAME)
    matching (ID)
    returning ID into :ID;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spUsersEmpty -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spUsersEmpty
RETURNS (
    ID integer)
AS
begin
  update or insert into USERS (ID)
    values (null)
    matching (ID)
    returning ID into :ID;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spUsersDel -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spUsersDel (
    ID integer)
AS
begin
  delete from USERS where ID = :ID;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spUsersActiveSelect -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spUsersActiveSelect
RETURNS (
    ID integer,
    USERNAME varchar(128),
    PASSWORD varchar(128),
    ID_ROLE integer,
    USER_FULL_NAME varchar(255),
    SYS_CREATE_DATE timestamp,
    STATE integer)
AS
begin
  for select ID, USERNAME, PASSWORD, ID_ROLE, USER_FULL_NAME, SYS_CREATE_DATE, STATE
      from USERS
      where (STATE = 1 or ID = 1)
      into :ID, :USERNAME, :PASSWORD, :ID_ROLE, :USER_FULL_NAME, :SYS_CREATE_DATE, :STATE
  do
    suspend;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spActionsOpen -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spActionsOpen
RETURNS (
    ID integer,
    ACTNAME varchar(255),
    SYS_TACTION varchar(255))
AS
begin
  for select ID, ACTNAME, TACTION
      from ACTIONS
      into :ID, :ACTNAME, :SYS_TACTION
  do
    suspend;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spActionsEdit -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spActionsEdit (
    OLD_ID integer,
    ACTNAME varchar(255),
    TACTION varchar(255))
RETURNS (
    ID integer)
AS
begin
  if (OLD_ID is null or OLD_ID = 0) then
    OLD_ID = (select ID from ACTIONS where TACTION = :TACTION);
  update or insert into ACTIONS (ID, ACTNAME, TACTION)
    values (:OLD_ID, :ACTNAME, :TACTION)
    matching (ID)
    returning ID into :ID;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spActionsEmpty -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spActionsEmpty
RETURNS (
    ID integer)
AS
begin
  update or insert into ACTIONS (ID)
    values (null)
    matching (ID)
    returning ID into :ID;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spActionsDel -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spActionsDel (
    ID integer)
AS
begin
  delete from ACTIONS where ID = :ID;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spRightsOpen -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spRightsOpen
RETURNS (
    ID integer,
    RIGHTNAME varchar(32))
AS
begin
  for select ID, RIGHTNAME
      from RIGHTS
      into :ID, :RIGHTNAME
  do
    suspend;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spRightsEdit -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spRightsEdit (
    OLD_ID integer,
    RIGHTNAME varchar(32))
RETURNS (
    ID integer)
AS
begin
  update or insert into RIGHTS (ID, RIGHTNAME)
    values (:OLD_ID, :RIGHTNAME)
    matching (ID)
    returning ID into :ID;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spRightsEmpty -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spRightsEmpty
RETURNS (
    ID integer)
AS
begin
  update or insert into RIGHTS (ID)
    values (null)
    matching (ID)
    returning ID into :ID;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spRightsDel -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spRightsDel (
    ID integer)
AS
begin
  if (exists(select * from ROLES_ACTIONS where ID_RIGHTS = :ID)) then
    exception ROLES_ACTIONS_HAS_RIGHTS;
  delete from RIGHTS where ID = :ID;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spRolesActionsOpen -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spRolesActionsOpen (
    ID_ROLE integer = null)
RETURNS (
    ID integer,
    ID_ROLE_LKP_ROLES_F_ROLENAME integer,
    ID_ACTION_LKP_ACTIONS_F_ACTNAME integer,
    ID_RIGHT_LKP_RIGHTS_F_RIGHTNAME integer)
AS
begin
  -- a pair without a row gets the default right of its role
  for select ra.ID,
             r.ID,
             a.ID,
             iif(ra.ID is null,
                 case r.ID when 1 then 4 when 2 then 3 when 3 then 2 when 4 then 1 end,
                 ra.ID_RIGHTS)
      from ACTIONS a
      cross join ROLES r
      left join ROLES_ACTIONS ra on ra.ID_ROLE = r.ID and ra.ID_ACTION = a.ID
      where r.ID = coalesce(:ID_ROLE, r.ID)
      order by r.ID, a.ID
      into :ID, :ID_ROLE_LKP_ROLES_F_ROLENAME, :ID_ACTION_LKP_ACTIONS_F_ACTNAME,
           :ID_RIGHT_LKP_RIGHTS_F_RIGHTNAME
  do
    suspend;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spRolesActionsEdit -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spRolesActionsEdit (
    OLD_ID integer,
    ID_ROLE_LKP_ROLES_F_ROLENAME integer,
    ID_ACTION_LKP_ACTIONS_F_ACTNAME integer,
    ID_RIGHT_LKP_RIGHTS_F_RIGHTNAME integer)
RETURNS (
    ID integer)
AS
begin
  if (coalesce(ID_ROLE_LKP_ROLES_F_ROLENAME, 0) = 0
      or coalesce(ID_ACTION_LKP_ACTIONS_F_ACTNAME, 0) = 0
      or coalesce(ID_RIGHT_LKP_RIGHTS_F_RIGHTNAME, 0) = 0) then
    exit;
  if (OLD_ID is null or OLD_ID = 0) then
    OLD_ID = (select ID from ROLES_ACTIONS
              where ID_ROLE = :ID_ROLE_LKP_ROLES_F_ROLENAME
                and ID_ACTION = :ID_ACTION_LKP_ACTIONS_F_ACTNAME);
  update or insert into ROLES_ACTIONS (ID, ID_ROLE, ID_ACTION, ID_RIGHTS)
    values (:OLD_ID, :ID_ROLE_LKP_ROLES_F_ROLENAME, :ID_ACTION_LKP_ACTIONS_F_ACTNAME, :ID_RIGHT_LKP_RIGHTS_F_RIGHTNAME)
    matching (ID)
    returning ID into :ID;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spRolesActionsEmpty -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spRolesActionsEmpty
RETURNS (
    ID integer)
AS
begin
  exception ROLES_ACTIONS_NOT_ADDITION;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spRolesActionsDel -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spRolesActionsDel (
    ID integer)
AS
begin
  -- rights rows are not deleted from the grid
  if (exists(select * from ROLES_ACTIONS where ID = :ID)) then
    exception ROLES_ACTIONS_HAS_RIGHTS;
  delete from ROLES_ACTIONS where ID = :ID;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spGetRights -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spGetRights (
    ID_ROLE integer,
    ID_ACTION integer)
RETURNS (
    ID_RIGHTS integer)
AS
begin
  for select coalesce(ID_RIGHT_LKP_RIGHTS_F_RIGHTNAME, 0)
      from spRolesActionsOpen(:ID_ROLE)
      where ID_ACTION_LKP_ACTIONS_F_ACTNAME = :ID_ACTION
      into :ID_RIGHTS
  do
    suspend;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spDiscountsOpen -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spDiscountsOpen
RETURNS (
    ID integer,
    DFROM float,
    DTO float,
    DVALUE float)
AS
begin
  for select ID, DFROM, DTO, DVALUE
      from DISCOUNTS
      into :ID, :DFROM, :DTO, :DVALUE
  do
    suspend;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spDiscountsEdit -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spDiscountsEdit (
    OLD_ID integer,
    DFROM float,
    DTO float,
    DVALUE float)
RETURNS (
    ID integer)
AS
begin
  update or insert into DISCOUNTS (ID, DFROM, DTO, DVALUE)
    values (:OLD_ID, :DFROM, :DTO, :DVALUE)
    matching (ID)
    returning ID into :ID;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spDiscountsEmpty -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spDiscountsEmpty
RETURNS (
    ID integer)
AS
begin
  update or insert into DISCOUNTS (ID)
    values (null)
    matching (ID)
    returning ID into :ID;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spDiscountsDel -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spDiscountsDel (
    ID integer)
AS
begin
  delete from DISCOUNTS where ID = :ID;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spATypeOpen -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spATypeOpen
RETURNS (
    ID integer,
    ATYPENAME varchar(30))
AS
begin
  for select ID, ATYPENAME
      from ATYPE
      into :ID, :ATYPENAME
  do
    suspend;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spATypeEdit -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spATypeEdit (
    OLD_ID integer,
    ATYPENAME varchar(32))
RETURNS (
    ID integer)
AS
begin
  update or insert into ATYPE (ID, ATYPENAME)
    values (:OLD_ID, :ATYPENAME)
    matching (ID)
    returning ID into :ID;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spATypeEmpty -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spATypeEmpty
RETURNS (
    ID integer)
AS
begin
  update or insert into ATYPE (ID)
    values (null)
    matching (ID)
    returning ID into :ID;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spATypeDel -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spATypeDel (
    ID integer)
AS
begin
  if (exists(select * from AUTO where TYPE = :ID)) then
    exception TYPE_HAS_AUTO;
  delete from ATYPE where ID = :ID;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spModOpen -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spModOpen
RETURNS (
    ID integer,
    MODNAME varchar(30))
AS
begin
  for select ID, MODNAME
      from MODEL
      into :ID, :MODNAME
  do
    suspend;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spModEdit -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spModEdit (
    OLD_ID integer,
    MODNAME varchar(30))
RETURNS (
    ID integer)
AS
begin
  update or insert into MODEL (ID, MODNAME)
    values (:OLD_ID, :MODNAME)
    matching (ID)
    returning ID into :ID;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spModEmpty -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spModEmpty
RETURNS (
    ID integer)
AS
begin
  update or insert into MODEL (ID)
    values (null)
    matching (ID)
    returning ID into :ID;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spModDel -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spModDel (
    ID integer)
AS
begin
  if (exists(select * from AUTO where MODNAME = :ID)) then
    exception MODEL_HAS_AUTO;
  delete from MODEL where ID = :ID;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spMarkOpen -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spMarkOpen
RETURNS (
    ID integer,
    MARKNAME varchar(30))
AS
begin
  for select ID, MARKNAME
      from MARK
      into :ID, :MARKNAME
  do
    suspend;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spMarkEdit -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spMarkEdit (
    OLD_ID integer,
    MARKNAME varchar(30))
RETURNS (
    ID integer)
AS
begin
  if (OLD_ID is null or OLD_ID = 0) then
    OLD_ID = (select ID from MARK where MARKNAME = :MARKNAME);
  update or insert into MARK (ID, MARKNAME)
    values (:OLD_ID, :MARKNAME)
    matching (ID)
    returning ID into :ID;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spMarkEmpty -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spMarkEmpty
RETURNS (
    ID integer)
AS
begin
  update or insert into MARK (ID)
    values (null)
    matching (ID)
    returning ID into :ID;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spMarkDel -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spMarkDel (
    ID integer)
AS
begin
  if (exists(select * from AUTO where MARK = :ID)) then
    exception MARK_HAS_AUTO;
  delete from MARK where ID = :ID;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spYearOpen -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spYearOpen
RETURNS (
    ID integer,
    AYEARNAME varchar(30))
AS
begin
  for select ID, AYEARNAME
      from AYEAR
      into :ID, :AYEARNAME
  do
    suspend;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spYearEdit -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spYearEdit (
    OLD_ID integer,
    AYEARNAME varchar(30))
RETURNS (
    ID integer)
AS
begin
  update or insert into AYEAR (ID, AYEARNAME)
    values (:OLD_ID, :AYEARNAME)
    matching (ID)
    returning ID into :ID;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spYearEmpty -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spYearEmpty
RETURNS (
    ID integer)
AS
begin
  update or insert into AYEAR (ID)
    values (null)
    matching (ID)
    returning ID into :ID;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spYearDel -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spYearDel (
    ID integer)
AS
begin
  if (exists(select * from AUTO where AYEAR = :ID)) then
    exception YEAR_HAS_AUTO;
  delete from AYEAR where ID = :ID;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spNalOpen -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spNalOpen
RETURNS (
    ID integer,
    NAME varchar(32))
AS
begin
  for select ID, NAME
      from NAL
      into :ID, :NAME
  do
    suspend;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spNalEdit -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spNalEdit (
    OLD_ID integer,
    NAME varchar(32))
RETURNS (
    ID integer)
AS
begin
  update or insert into NAL (ID, NAME)
    values (:OLD_ID, :NAME)
    matching (ID)
    returning ID into :ID;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spNalEmpty -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spNalEmpty
RETURNS (
    ID integer)
AS
begin
  update or insert into NAL (ID)
    values (null)
    matching (ID)
    returning ID into :ID;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spNalDel -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spNalDel (
    ID integer)
AS
begin
  delete from NAL where ID = :ID;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spPartsOpen -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spPartsOpen
RETURNS (
    ID integer,
    PARTNAME varchar(128))
AS
begin
  for select ID, PARTNAME
      from PARTS
      into :ID, :PARTNAME
  do
    suspend;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spPartsEdit -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spPartsEdit (
    OLD_ID integer,
    PARTNAME varchar(128))
RETURNS (
    ID integer)
AS
begin
  update or insert into PARTS (ID, PARTNAME)
    values (:OLD_ID, :PARTNAME)
    matching (ID)
    returning ID into :ID;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spPartsEmpty -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spPartsEmpty
RETURNS (
    ID integer)
AS
begin
  update or insert into PARTS (ID)
    values (null)
    matching (ID)
    returning ID into :ID;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spPartsDel -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spPartsDel (
    ID integer)
AS
begin
  delete from PARTS where ID = :ID;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spCmatOpen -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spCmatOpen
RETURNS (
    ID integer,
    CMATNAME varchar(64))
AS
begin
  for select ID, CMATNAME
      from CMAT
      into :ID, :CMATNAME
  do
    suspend;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spCmatEdit -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spCmatEdit (
    OLD_ID integer,
    CMATNAME varchar(64))
RETURNS (
    ID integer)
AS
begin
  update or insert into CMAT (ID, CMATNAME)
    values (:OLD_ID, :CMATNAME)
    matching (ID)
    returning ID into :ID;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spCmatEmpty -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spCmatEmpty
RETURNS (
    ID integer)
AS
begin
  update or insert into CMAT (ID)
    values (null)
    matching (ID)
    returning ID into :ID;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spCmatDel -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spCmatDel (
    ID integer)
AS
begin
  if (exists(select * from CMAT where PARENT = :ID)) then
    exception CMAT_HAS_DESCENDANTS;
  if (exists(select * from MAT where IDCMAT = :ID)) then
    exception CMAT_HAS_MAT;
  delete from CMAT where ID = :ID;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spCServOpen -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spCServOpen
RETURNS (
    ID integer,
    CSERVNAME varchar(64))
AS
begin
  for select ID, CSERVNAME
      from CSERV
      into :ID, :CSERVNAME
  do
    suspend;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spCServEdit -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spCServEdit (
    OLD_ID integer,
    CSERVNAME varchar(64))
RETURNS (
    ID integer)
AS
begin
  update or insert into CSERV (ID, CSERVNAME)
    values (:OLD_ID, :CSERVNAME)
    matching (ID)
    returning ID into :ID;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spCServEmpty -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spCServEmpty
RETURNS (
    ID integer)
AS
begin
  update or insert into CSERV (ID)
    values (null)
    matching (ID)
    returning ID into :ID;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spCServDel -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spCServDel (
    ID integer)
AS
begin
  if (exists(select * from CSERV where PARENT = :ID)) then
    exception CSERV_HAS_DESCENDANTS;
  if (exists(select * from SERV where IDCSERV = :ID)) then
    exception SERV_HAS_CSERV;
  delete from CSERV where ID = :ID;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spCntryOpen -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spCntryOpen
RETURNS (
    ID integer,
    CNTRYNAME varchar(64))
AS
begin
  for select ID, CNTRYNAME
      from CNTRY
      into :ID, :CNTRYNAME
  do
    suspend;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spCntryEdit -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spCntryEdit (
    OLD_ID integer,
    CNTRYNAME varchar(64))
RETURNS (
    ID integer)
AS
begin
  update or insert into CNTRY (ID, CNTRYNAME)
    values (:OLD_ID, :CNTRYNAME)
    matching (ID)
    returning ID into :ID;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spCntryEmpty -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spCntryEmpty
RETURNS (
    ID integer)
AS
begin
  update or insert into CNTRY (ID)
    values (null)
    matching (ID)
    returning ID into :ID;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spCntryDel -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spCntryDel (
    ID integer)
AS
begin
  if (exists(select * from MAT where IDCNTRY = :ID)) then
    exception CNTRY_HAS_MAT;
  delete from CNTRY where ID = :ID;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spProdOpen -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spProdOpen
RETURNS (
    ID integer,
    PRODNAME varchar(64))
AS
begin
  for select ID, PRODNAME
      from PROD
      into :ID, :PRODNAME
  do
    suspend;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spProdEdit -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spProdEdit (
    OLD_ID integer,
    PRODNAME varchar(64))
RETURNS (
    ID integer)
AS
begin
  update or insert into PROD (ID, PRODNAME)
    values (:OLD_ID, :PRODNAME)
    matching (ID)
    returning ID into :ID;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spProdEmpty -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spProdEmpty
RETURNS (
    ID integer)
AS
begin
  update or insert into PROD (ID)
    values (null)
    matching (ID)
    returning ID into :ID;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spProdDel -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spProdDel (
    ID integer)
AS
begin
  if (exists(select * from MAT where IDPROD = :ID)) then
    exception PROD_HAS_MAT;
  delete from PROD where ID = :ID;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spPosOpen -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spPosOpen
RETURNS (
    ID integer,
    POSNAME varchar(32),
    COMMENT varchar(1024))
AS
begin
  for select ID, POSNAME, COMMENT
      from POSITS
      into :ID, :POSNAME, :COMMENT
  do
    suspend;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spPosEdit -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spPosEdit (
    OLD_ID integer,
    POSNAME varchar(32),
    COMMENT varchar(1024))
RETURNS (
    ID integer)
AS
begin
  update or insert into POSITS (ID, POSNAME, COMMENT)
    values (:OLD_ID, :POSNAME, :COMMENT)
    matching (ID)
    returning ID into :ID;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spPosEmpty -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spPosEmpty
RETURNS (
    ID integer)
AS
begin
  update or insert into POSITS (ID)
    values (null)
    matching (ID)
    returning ID into :ID;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spPosDel -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spPosDel (
    ID integer)
AS
begin
  if (exists(select * from EMPLS where IDPOS = :ID)) then
    exception POSIT_HAS_EMPL;
  delete from POSITS where ID = :ID;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spEstatOpen -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spEstatOpen
RETURNS (
    ID integer,
    ESTNAME varchar(32),
    COMMENT varchar(1024))
AS
begin
  for select ID, ESTNAME, COMMENT
      from ESTATS
      into :ID, :ESTNAME, :COMMENT
  do
    suspend;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spEstatEdit -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spEstatEdit (
    OLD_ID integer,
    ESTNAME varchar(32),
    COMMENT varchar(1024))
RETURNS (
    ID integer)
AS
begin
  update or insert into ESTATS (ID, ESTNAME, COMMENT)
    values (:OLD_ID, :ESTNAME, :COMMENT)
    matching (ID)
    returning ID into :ID;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spEstatEmpty -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spEstatEmpty
RETURNS (
    ID integer)
AS
begin
  update or insert into ESTATS (ID)
    values (null)
    matching (ID)
    returning ID into :ID;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spEstatDel -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spEstatDel (
    ID integer)
AS
begin
  if (exists(select * from EMPLS where IDESTAT = :ID)) then
    exception ESTAT_HAS_EMPL;
  delete from ESTATS where ID = :ID;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spEmplOpen -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spEmplOpen (
    F_EMPLNAME varchar(255) character set win1251,
    F_POS integer,
    F_ESTAT integer,
    F_ADDRESS varchar(1024) character set win1251,
    F_PHONES varchar(255) character set win1251)
RETURNS (
    ID integer,
    EMPLNAME varchar(128),
    IDPOS_LKP_POS_F_POSNAME integer,
    IDESTAT_LKP_ESTAT_F_ESTNAME integer,
    EMPL_FULL_NAME varchar(255),
    SYS_CREATE_DATE timestamp,
    ADDRESS varchar(512),
    PHONES varchar(100),
    PERCSERV float,
    PERCMAT float,
    COMMENT varchar(1024))
AS
begin
  for select e.ID,
             e.EMPLNAME,
             e.IDPOS,
             e.IDESTAT,
             e.EMPL_FULL_NAME,
             e.SYS_CREATE_DATE,
             e.ADDRESS,
             e.PHONES,
             e.PERCSERV,
             e.PERCMAT,
             e.COMMENT
      from EMPLS e
      where (upper(e.EMPLNAME collate pxw_cyrl) like upper(coalesce(:F_EMPLNAME, e.EMPLNAME) collate pxw_cyrl)
             or e.EMPLNAME is null)
        and (e.IDPOS = coalesce(:F_POS, e.IDPOS) or e.IDPOS is null)
        and (e.IDESTAT = coalesce(:F_ESTAT, e.IDESTAT) or e.IDESTAT is null)
        and (upper(e.ADDRESS collate pxw_cyrl) like upper(coalesce(:F_ADDRESS, e.ADDRESS) collate pxw_cyrl)
             or e.ADDRESS is null)
        and (upper(e.PHONES collate pxw_cyrl) like upper(coalesce(:F_PHONES, e.PHONES) collate pxw_cyrl)
             or e.PHONES is null)
      into :ID, :EMPLNAME, :IDPOS_LKP_POS_F_POSNAME, :IDESTAT_LKP_ESTAT_F_ESTNAME, :EMPL_FULL_NAME,
           :SYS_CREATE_DATE, :ADDRESS, :PHONES, :PERCSERV, :PERCMAT, :COMMENT
  do
    suspend;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spEmplEdit -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spEmplEdit (
    OLD_ID integer,
    EMPLNAME varchar(128),
    IDPOS_LKP_POSITS_F_POSNAME integer,
    IDESTAT_LKP_ESTATS_F_ESTNAME integer,
    EMPL_FULL_NAME varchar(255),
    SYS_CREATE_DATE timestamp,
    ADDRESS varchar(512),
    PHONES varchar(100),
    PERCSERV float,
    PERCMAT float,
    COMMENT varchar(1024))
RETURNS (
    ID integer)
AS
begin
  update or insert into EMPLS (ID, EMPLNAME, IDPOS, IDESTAT, EMPL_FULL_NAME, SYS_CREATE_DATE, ADDRESS, PHONES, PERCSERV, PERCMAT, COMMENT)
    values (:OLD_ID, :EMPLNAME, :IDPOS_LKP_POSITS_F_POSNAME, :IDESTAT_LKP_ESTATS_F_ESTNAME, :EMPL_FULL_NAME, :SYS_CREATE_DATE, :ADDRESS, :PHONES, :PERCSERV, :PERCMAT, :COMMENT)
    matching (ID)
    returning ID into :ID;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spEmplEmpty -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spEmplEmpty
RETURNS (
    ID integer)
AS
begin
  update or insert into EMPLS (ID)
    values (null)
    matching (ID)
    returning ID into :ID;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spEmplDel -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spEmplDel (
    ID integer)
AS
begin
  if (exists(select * from SALARY where IDEMPL = :ID)) then
    exception EMPL_HAS_SALARY;
  if (exists(select * from ORDSERV where IDEMPL = :ID)) then
    exception EMPL_HAS_ORDERS;
  delete from EMPLS where ID = :ID;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spOTypeOpen -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spOTypeOpen
RETURNS (
    ID integer,
    OTYPENAME varchar(128))
AS
begin
  for select ID, OTYPENAME
      from OTYPE
      into :ID, :OTYPENAME
  do
    suspend;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spOTypeEdit -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spOTypeEdit (
    OLD_ID integer,
    OTYPENAME varchar(128))
RETURNS (
    ID integer)
AS
begin
  update or insert into OTYPE (ID, OTYPENAME)
    values (:OLD_ID, :OTYPENAME)
    matching (ID)
    returning ID into :ID;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spOTypeEmpty -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spOTypeEmpty
RETURNS (
    ID integer)
AS
begin
  update or insert into OTYPE (ID)
    values (null)
    matching (ID)
    returning ID into :ID;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spOTypeDel -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spOTypeDel (
    ID integer)
AS
begin
  if (exists(select * from STOREMAT where IDOTYPE = :ID)) then
    exception OTYPE_HAS_STOREMAT;
  delete from OTYPE where ID = :ID;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spServOpen -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spServOpen (
    F_SERVNAME varchar(255) character set win1251,
    F_CATEGORY varchar(255) character set win1251,
    F_SERVART varchar(255) character set win1251,
    F_SERVCODE varchar(255) character set win1251)
RETURNS (
    ID integer,
    SERVNAME varchar(64),
    SERVART varchar(64),
    SERVCODE varchar(64),
    IDCSERV_LKP_CSERV_F_CSERVNAME integer,
    HOURS float,
    COST float,
    COMMENT varchar(1024))
AS
begin
  for select s.ID, s.SERVNAME, s.SERVART, s.SERVCODE, s.IDCSERV, s.HOURS, s.COST, s.COMMENT
      from SERV s
      left join CSERV c on c.ID = s.IDCSERV
      where (upper(s.SERVNAME collate pxw_cyrl) like upper(coalesce(:F_SERVNAME, s.SERVNAME) collate pxw_cyrl)
             or s.SERVNAME is null)
        and (upper(c.CSERVNAME collate pxw_cyrl) like upper(coalesce(:F_CATEGORY, c.CSERVNAME) collate pxw_cyrl)
             or c.CSERVNAME is null)
        and (upper(s.SERVART collate pxw_cyrl) like upper(coalesce(:F_SERVART, s.SERVART) collate pxw_cyrl)
             or s.SERVART is null)
        and (upper(s.SERVCODE collate pxw_cyrl) like upper(coalesce(:F_SERVCODE, s.SERVCODE) collate pxw_cyrl)
             or s.SERVCODE is null)
      into :ID, :SERVNAME, :SERVART, :SERVCODE, :IDCSERV_LKP_CSERV_F_CSERVNAME, :HOURS, :COST,
           :COMMENT
  do
    suspend;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spServEdit -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spServEdit (
    OLD_ID integer,
    SERVNAME varchar(64),
    SERVART varchar(64),
    SERVCODE varchar(64),
    IDCSERV integer,
    HOURS float,
    COST float,
    COMMENT varchar(1024))
RETURNS (
    ID integer)
AS
begin
  update or insert into SERV (ID, SERVNAME, SERVART, SERVCODE, IDCSERV, HOURS, COST, COMMENT)
    values (:OLD_ID, :SERVNAME, :SERVART, :SERVCODE, :IDCSERV, :HOURS, :COST, :COMMENT)
    matching (ID)
    returning ID into :ID;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spServEmpty -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spServEmpty
RETURNS (
    ID integer)
AS
begin
  update or insert into SERV (ID)
    values (null)
    matching (ID)
    returning ID into :ID;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spServDel -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spServDel (
    ID integer)
AS
begin
  if (exists(select * from ORDSERV where IDSERV = :ID)) then
    exception SERV_HAS_ORDERS;
  delete from SERV where ID = :ID;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spMatOpen -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spMatOpen (
    F_MATNAME varchar(255) character set win1251,
    F_CATEGORY varchar(255) character set win1251,
    F_ARTICUL varchar(255) character set win1251,
    F_SCODE varchar(255) character set win1251)
RETURNS (
    ID integer,
    MATNAME varchar(64),
    IDCMAT_LKP_CMAT_F_CMATNAME integer,
    ARTICUL varchar(64),
    SCODE varchar(64),
    QUANTITY integer,
    COST float,
    IDPROD_LKP_PROD_F_PRODNAME integer,
    IDCNTRY_LKP_CNTRY_F_CNTRYNAME integer,
    COMMENT varchar(1024))
AS
begin
  for select m.ID,
             m.MATNAME,
             m.IDCMAT,
             m.ARTICUL,
             m.SCODE,
             m.QUANTITY,
             m.COST,
             m.IDPROD,
             m.IDCNTRY,
             m.COMMENT
      from MAT m
      left join CMAT c on c.ID = m.IDCMAT
      where (upper(m.MATNAME collate pxw_cyrl) like upper(coalesce(:F_MATNAME, m.MATNAME) collate pxw_cyrl)
             or m.MATNAME is null)
        and (upper(c.CMATNAME collate pxw_cyrl) like upper(coalesce(:F_CATEGORY, c.CMATNAME) collate pxw_cyrl)
             or c.CMATNAME is null)
        and (upper(m.ARTICUL collate pxw_cyrl) like upper(coalesce(:F_ARTICUL, m.ARTICUL) collate pxw_cyrl)
             or m.ARTICUL is null)
        and (upper(m.SCODE collate pxw_cyrl) like upper(coalesce(:F_SCODE, m.SCODE) collate pxw_cyrl)
             or m.SCODE is null)
      into :ID, :MATNAME, :IDCMAT_LKP_CMAT_F_CMATNAME, :ARTICUL, :SCODE, :QUANTITY, :COST,
           :IDPROD_LKP_PROD_F_PRODNAME, :IDCNTRY_LKP_CNTRY_F_CNTRYNAME, :COMMENT
  do
    suspend;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spMatEdit -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spMatEdit (
    OLD_ID integer,
    MATNAME varchar(64),
    IDCMAT_LKP_CMAT_F_CMATNAME integer,
    ARTICUL varchar(64),
    SCODE varchar(64),
    QUANTITY integer,
    COST float,
    IDPROD_LKP_PROD_F_PRODNAME integer,
    IDCNTRY_LKP_CNTRY_F_CNTRYNAME integer,
    COMMENT varchar(1024))
RETURNS (
    ID integer)
AS
begin
  update or insert into MAT (ID, MATNAME, IDCMAT, ARTICUL, SCODE, QUANTITY, COST, IDPROD, IDCNTRY, COMMENT)
    values (:OLD_ID, :MATNAME, :IDCMAT_LKP_CMAT_F_CMATNAME, :ARTICUL, :SCODE, :QUANTITY, :COST, :IDPROD_LKP_PROD_F_PRODNAME, :IDCNTRY_LKP_CNTRY_F_CNTRYNAME, :COMMENT)
    matching (ID)
    returning ID into :ID;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spMatEmpty -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spMatEmpty
RETURNS (
    ID integer)
AS
begin
  update or insert into MAT (ID)
    values (null)
    matching (ID)
    returning ID into :ID;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spMatDel -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spMatDel (
    ID integer)
AS
begin
  if (exists(select * from ORDMAT where IDMAT = :ID)) then
    exception MAT_HAS_ORDERS;
  if (exists(select * from STORE where IDMAT = :ID)) then
  begin
    if (exists(select * from STORE where IDMAT = :ID and coalesce(DEL, 0) = 0)) then
      exception MAT_HAS_STORE;
    delete from STORE where IDMAT = :ID;
  end
  delete from MAT where ID = :ID;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spMatDialog -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spMatDialog (
    F_MATNAME varchar(255) character set win1251,
    F_CATEGORY varchar(255) character set win1251,
    F_ARTICUL varchar(255) character set win1251,
    F_SCODE varchar(255) character set win1251)
RETURNS (
    ID integer,
    MATNAME varchar(64),
    IDCMAT_LKP_CMAT_F_CMATNAME integer,
    ARTICUL varchar(64),
    SCODE varchar(64),
    QUANTITY integer,
    COST float,
    IDPROD_LKP_PROD_F_PRODNAME integer,
    IDCNTRY_LKP_CNTRY_F_CNTRYNAME integer,
    COMMENT varchar(1024))
AS
begin
  for select m.ID,
             m.MATNAME,
             m.IDCMAT,
             m.ARTICUL,
             m.SCODE,
             m.QUANTITY,
             m.COST,
             m.IDPROD,
             m.IDCNTRY,
             m.COMMENT
      from MAT m
      left join CMAT c on c.ID = m.IDCMAT
      where (upper(m.MATNAME collate pxw_cyrl) like upper(coalesce(:F_MATNAME, m.MATNAME) collate pxw_cyrl)
             or m.MATNAME is null)
        and (upper(c.CMATNAME collate pxw_cyrl) like upper(coalesce(:F_CATEGORY, c.CMATNAME) collate pxw_cyrl)
             or c.CMATNAME is null)
        and (upper(m.ARTICUL collate pxw_cyrl) like upper(coalesce(:F_ARTICUL, m.ARTICUL) collate pxw_cyrl)
             or m.ARTICUL is null)
        and (upper(m.SCODE collate pxw_cyrl) like upper(coalesce(:F_SCODE, m.SCODE) collate pxw_cyrl)
             or m.SCODE is null)
      into :ID, :MATNAME, :IDCMAT_LKP_CMAT_F_CMATNAME, :ARTICUL, :SCODE, :QUANTITY, :COST,
           :IDPROD_LKP_PROD_F_PRODNAME, :IDCNTRY_LKP_CNTRY_F_CNTRYNAME, :COMMENT
  do
    suspend;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spCustOpen -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spCustOpen (
    F_CUSTNAME varchar(255) character set win1251 = null,
    F_PHONE varchar(255) character set win1251 = null,
    F_ADDRESS varchar(1024) character set win1251 = null,
    F_REG varchar(255) character set win1251 = null,
    F_MODNAME integer = null,
    F_MARK integer = null)
RETURNS (
    ID integer,
    CUSTNAME varchar(128),
    MOBI_PHONE varchar(128),
    ADDRESS varchar(1024),
    HOME_PHONE varchar(128),
    EMAILS varchar(128),
    COMMENT varchar(255),
    INN varchar(50),
    FULL_NAME varchar(1024),
    KPP varchar(50),
    JUR_ADDR varchar(1024),
    OGRN varchar(50),
    OKONH varchar(50),
    OKVED varchar(50),
    OKPO varchar(50),
    BIK varchar(50),
    BANK varchar(100),
    PAY_ACC varchar(50),
    CORR_ACC varchar(50),
    GEN_DIR varchar(100),
    GLAV_BUH varchar(100),
    DISCOUNT integer,
    DISCOUNT_VALUE float,
    CARDNUMBER varchar(32))
AS
begin
  for select c.ID,
             c.CUSTNAME,
             c.MOBI_PHONE,
             c.ADDRESS,
             c.HOME_PHONE,
             c.EMAILS,
             c.COMMENT,
             c.INN,
             c.FULL_NAME,
             c.KPP,
             c.JUR_ADDR,
             c.OGRN,
             c.OKONH,
             c.OKVED,
             c.OKPO,
             c.BIK,
             c.BANK,
             c.PAY_ACC,
             c.CORR_ACC,
             c.GEN_DIR,
             c.GLAV_BUH,
             c.DISCOUNT,
             c.DISCOUNT_VALUE,
             c.CARDNUMBER
      from CUST c
      left join (select distinct o.IDCUST, a.REG, a.MODNAME, a.MARK
                 from ORDERS o
                 join AUTO a on a.ID = o.IDAUTO) v on v.IDCUST = c.ID
      where c.ID <> 1
        and (upper(c.CUSTNAME collate pxw_cyrl) like upper(coalesce(:F_CUSTNAME, c.CUSTNAME) collate pxw_cyrl)
             or c.CUSTNAME is null)
        and (upper(c.MOBI_PHONE collate pxw_cyrl) like upper(coalesce(:F_PHONE, c.MOBI_PHONE) collate pxw_cyrl)
             or c.MOBI_PHONE is null)
        and (upper(c.ADDRESS collate pxw_cyrl) like upper(coalesce(:F_ADDRESS, c.ADDRESS) collate pxw_cyrl)
             or c.ADDRESS is null)
        and (upper(v.REG collate pxw_cyrl) like upper(coalesce(:F_REG, v.REG) collate pxw_cyrl)
             or v.REG is null)
        and (v.MODNAME = :F_MODNAME or :F_MODNAME is null)
        and (v.MARK = :F_MARK or :F_MARK is null)
      into :ID, :CUSTNAME, :MOBI_PHONE, :ADDRESS, :HOME_PHONE, :EMAILS, :COMMENT, :INN, :FULL_NAME,
           :KPP, :JUR_ADDR, :OGRN, :OKONH, :OKVED, :OKPO, :BIK, :BANK, :PAY_ACC, :CORR_ACC,
           :GEN_DIR, :GLAV_BUH, :DISCOUNT, :DISCOUNT_VALUE, :CARDNUMBER
  do
    suspend;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spCustDialog -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spCustDialog (
    F_CUSTNAME varchar(255) character set win1251 = null,
    F_PHONE varchar(255) character set win1251 = null,
    F_ADDRESS varchar(1024) character set win1251 = null)
RETURNS (
    ID integer,
    CUSTNAME varchar(128),
    MOBI_PHONE varchar(128),
    ADDRESS varchar(1024))
AS
begin
  for select c.ID, c.CUSTNAME, c.MOBI_PHONE, c.ADDRESS
      from CUST c
      where (upper(c.CUSTNAME collate pxw_cyrl) like upper(coalesce(:F_CUSTNAME, c.CUSTNAME) collate pxw_cyrl)
             or c.CUSTNAME is null)
        and (upper(c.MOBI_PHONE collate pxw_cyrl) like upper(coalesce(:F_PHONE, c.MOBI_PHONE) collate pxw_cyrl)
             or c.MOBI_PHONE is null)
        and (upper(c.ADDRESS collate pxw_cyrl) like upper(coalesce(:F_ADDRESS, c.ADDRESS) collate pxw_cyrl)
             or c.ADDRESS is null)
      into :ID, :CUSTNAME, :MOBI_PHONE, :ADDRESS
  do
    suspend;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spCustOpen2 -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spCustOpen2 (
    ID_CUST integer)
RETURNS (
    ID integer,
    CUST_NAME varchar(128),
    FULL_NAME varchar(1024),
    JUR_ADDR varchar(1024),
    FACT_ADDR varchar(1024),
    PHONES varchar(100),
    INNKPP varchar(50),
    OKONH varchar(50),
    OKPO varchar(50),
    EMAILS varchar(50),
    BANK varchar(100),
    BIK varchar(50),
    PAY_ACC varchar(50),
    CORR_ACC varchar(50),
    GEN_DIR varchar(100),
    GLAV_BUH varchar(100),
    COMMENT varchar(255))
AS
begin
  for select ID,
             CUSTNAME,
             FULL_NAME,
             JUR_ADDR,
             ADDRESS,
             HOME_PHONE,
             INN || '/' || KPP,
             OKONH,
             OKPO,
             EMAILS,
             BANK,
             BIK,
             PAY_ACC,
             CORR_ACC,
             GEN_DIR,
             GLAV_BUH,
             COMMENT
      from CUST
      where ID = :ID_CUST
      into :ID, :CUST_NAME, :FULL_NAME, :JUR_ADDR, :FACT_ADDR, :PHONES, :INNKPP, :OKONH, :OKPO,
           :EMAILS, :BANK, :BIK, :PAY_ACC, :CORR_ACC, :GEN_DIR, :GLAV_BUH, :COMMENT
  do
    suspend;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spCustEdit -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spCustEdit (
    OLD_ID integer,
    CUSTNAME varchar(128),
    MOBI_PHONE varchar(128),
    ADDRESS varchar(1024),
    HOME_PHONE varchar(128),
    EMAILS varchar(128),
    COMMENT varchar(255),
    INN varchar(50),
    FULL_NAME varchar(1024),
    KPP varchar(50),
    JUR_ADDR varchar(1024),
    OGRN varchar(50),
    OKONH varchar(50),
    OKVED varchar(50),
    OKPO varchar(50),
    BIK varchar(50),
    BANK varchar(100),
    PAY_ACC varchar(50),
    CORR_ACC varchar(50),
    GEN_DIR varchar(100),
    GLAV_BUH varchar(100),
    DISCOUNT integer,
    DISCOUNT_VALUE float,
    CARDNUMBER varchar(32))
RETURNS (
    ID integer)
AS
begin
  if (OLD_ID is null or OLD_ID = 0) then
    OLD_ID = (select ID from CUST where CUSTNAME = :CUSTNAME);
  update or insert into CUST (ID, CUSTNAME, MOBI_PHONE, ADDRESS, HOME_PHONE, EMAILS, COMMENT, INN, FULL_NAME, KPP, JUR_ADDR, OGRN, OKONH, OKVED, OKPO, BIK, BANK, PAY_ACC, CORR_ACC, GEN_DIR, GLAV_BUH, DISCOUNT, DISCOUNT_VALUE, CARDNUMBER)
    values (:OLD_ID, :CUSTNAME, :MOBI_PHONE, :ADDRESS, :HOME_PHONE, :EMAILS, :COMMENT, :INN, :FULL_NAME, :KPP, :JUR_ADDR, :OGRN, :OKONH, :OKVED, :OKPO, :BIK, :BANK, :PAY_ACC, :CORR_ACC, :GEN_DIR, :GLAV_BUH, :DISCOUNT, :DISCOUNT_VALUE, :CARDNUMBER)
    matching (ID)
    returning ID into :ID;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spCustEdit2 -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spCustEdit2 (
    OLD_ID integer,
    CUSTNAME varchar(128),
    MOBI_PHONE varchar(128),
    ADDRESS varchar(1024))
RETURNS (
    ID integer)
AS
begin
  if (OLD_ID is null or OLD_ID = 0) then
    OLD_ID = (select ID from CUST where CUSTNAME = :CUSTNAME);
  update or insert into CUST (ID, CUSTNAME, MOBI_PHONE, ADDRESS)
    values (:OLD_ID, :CUSTNAME, :MOBI_PHONE, :ADDRESS)
    matching (ID)
    returning ID into :ID;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spCustEmpty -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spCustEmpty
RETURNS (
    ID integer)
AS
begin
  update or insert into CUST (ID)
    values (null)
    matching (ID)
    returning ID into :ID;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spCustDel -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spCustDel (
    ID integer)
AS
begin
  if (exists(select * from PAY where IDCUST = :ID)) then
    exception CUST_HAS_PAY;
  if (exists(select * from ORDERS where IDCUST = :ID)) then
    exception CUST_HAS_ORDER;
  if (exists(select * from STOREMAT where IDCUST = :ID)) then
    exception CUST_HAS_STOREMAT;
  if (exists(select * from ORDERS where IDCUST = :ID)) then
    exception CUST_HAS_ORDERS;
  delete from CUST where ID = :ID;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spRequisitsOpen -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spRequisitsOpen
RETURNS (
    ID integer,
    CUSTNAME varchar(128),
    MOBI_PHONE varchar(128),
    ADDRESS varchar(1024),
    PHONES varchar(128),
    EMAILS varchar(128),
    COMMENT varchar(255),
    INN varchar(50),
    FULL_NAME varchar(1024),
    KPP varchar(50),
    JUR_ADDR varchar(1024),
    OGRN varchar(50),
    OKONH varchar(50),
    OKVED varchar(50),
    OKPO varchar(50),
    BIK varchar(50),
    BANK varchar(100),
    PAY_ACC varchar(50),
    CORR_ACC varchar(50),
    GEN_DIR varchar(100),
    GLAV_BUH varchar(100),
    DISCOUNT integer,
    DISCOUNT_VALUE float,
    CARDNUMBER varchar(32))
AS
begin
  for select ID,
             CUSTNAME,
             MOBI_PHONE,
             ADDRESS,
             HOME_PHONE,
             EMAILS,
             COMMENT,
             INN,
             FULL_NAME,
             KPP,
             JUR_ADDR,
             OGRN,
             OKONH,
             OKVED,
             OKPO,
             BIK,
             BANK,
             PAY_ACC,
             CORR_ACC,
             GEN_DIR,
             GLAV_BUH,
             DISCOUNT,
             DISCOUNT_VALUE,
             CARDNUMBER
      from CUST
      where ID = 1
      into :ID, :CUSTNAME, :MOBI_PHONE, :ADDRESS, :PHONES, :EMAILS, :COMMENT, :INN, :FULL_NAME,
           :KPP, :JUR_ADDR, :OGRN, :OKONH, :OKVED, :OKPO, :BIK, :BANK, :PAY_ACC, :CORR_ACC,
           :GEN_DIR, :GLAV_BUH, :DISCOUNT, :DISCOUNT_VALUE, :CARDNUMBER
  do
    suspend;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spCustOrderOpen -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spCustOrderOpen (
    IDCUST integer)
RETURNS (
    ID integer,
    NUM varchar(20),
    CREATE_DATE date,
    STATUS_DATE date,
    STATUS_LKP_OSTATE_F_STATENAME integer,
    PAYSTATUS_LKP_PAYSTATE_F_STATUS integer,
    IDCUST_LKP_CUST_F_CUSTNAME integer,
    FULLNAME varchar(128),
    DEL integer,
    COMMENT varchar(1024),
    SUMORDER float,
    SUMPAY float)
AS
begin
  for select o.ID,
             o.NUM,
             o.CREATE_DATE,
             o.STATUS_DATE,
             o.IDSTATUS,
             o.PAYSTATE,
             o.IDCUST,
             a.FULLNAME,
             o.DEL,
             o.COMMENT,
             o.SUMORDER,
             o.SUMPAY
      from ORDERS o
      join AUTO a on a.ID = o.IDAUTO
      where o.IDCUST = :IDCUST
      order by o.CREATE_DATE desc
      into :ID, :NUM, :CREATE_DATE, :STATUS_DATE, :STATUS_LKP_OSTATE_F_STATENAME,
           :PAYSTATUS_LKP_PAYSTATE_F_STATUS, :IDCUST_LKP_CUST_F_CUSTNAME, :FULLNAME, :DEL, :COMMENT,
           :SUMORDER, :SUMPAY
  do
    suspend;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spCustOrderEdit -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spCustOrderEdit (
    OLD_ID integer,
    NUM varchar(20),
    CREATE_DATE date,
    STATUS_DATE date,
    STATUS_LKP_OSTATE_F_STATENAME integer,
    PAYSTATUS_LKP_PAYSTATE_F_STATUS integer,
    IDCUST_LKP_CUST_F_CUSTNAME integer,
    FULLNAME varchar(128),
    DEL integer,
    COMMENT varchar(1024),
    SUMORDER float,
    SUMPAY float)
RETURNS (
    ID integer)
AS
begin
end^
SET TERM ; ^
COMMIT;

;--------------------------- spCustOrderEmpty -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spCustOrderEmpty
RETURNS (
    ID integer)
AS
begin
end^
SET TERM ; ^
COMMIT;

;--------------------------- spCustOrderDel -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spCustOrderDel (
    ID integer)
AS
begin
end^
SET TERM ; ^
COMMIT;

;--------------------------- spCustPayOpen -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spCustPayOpen (
    IDCUST integer)
RETURNS (
    ID integer,
    DEL integer,
    PAYNUM varchar(32),
    PAYDATE date,
    PTYPE_LKP_PAYTYPE_F_PAYNAME integer,
    PURPOSE_LKP_PURPOSE_F_PURPOSE integer,
    IDOBJ_LKP_OBJECT_F_OBJNAME integer,
    OBJTEXT varchar(100),
    SUMM float,
    NAME_LKP_NAL_F_NAME varchar(32),
    COMMENT varchar(1024))
AS
begin
  for select ID, DEL, PAYNUM, PAYDATE, PTYPE, PURPOSE, IDOBJECT, OBJTEXT, SUMM, NAL, COMMENT
      from PAY
      where IDCUST = :IDCUST
      order by PAYDATE desc
      into :ID, :DEL, :PAYNUM, :PAYDATE, :PTYPE_LKP_PAYTYPE_F_PAYNAME,
           :PURPOSE_LKP_PURPOSE_F_PURPOSE, :IDOBJ_LKP_OBJECT_F_OBJNAME, :OBJTEXT, :SUMM,
           :NAME_LKP_NAL_F_NAME, :COMMENT
  do
    suspend;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spCustPayEdit -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spCustPayEdit (
    OLD_ID integer,
    DEL integer,
    PAYNUM varchar(32),
    PAYDATE date,
    PTYPE_LKP_PAYTYPE_F_PAYNAME integer,
    PURPOSE_LKP_PURPOSE_F_PURPOSE integer,
    IDOBJ_LKP_OBJECT_F_OBJNAME integer,
    OBJTEXT varchar(100),
    SUMM float,
    NAME_LKP_NAL_F_NAME varchar(32),
    COMMENT varchar(1024))
RETURNS (
    ID integer)
AS
begin
end^
SET TERM ; ^
COMMIT;

;--------------------------- spCustPayEmpty -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spCustPayEmpty
RETURNS (
    ID integer)
AS
begin
end^
SET TERM ; ^
COMMIT;

;--------------------------- spCustPayDel -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spCustOrderDel (
    ID integer)
AS
begin
end^
SET TERM ; ^
COMMIT;

;--------------------------- spAutoOpen -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spAutoOpen (
    F_TYPE integer,
    F_MODNAME integer,
    F_MARK integer,
    F_REG varchar(255) character set win1251,
    F_YEAR integer,
    F_VIN varchar(255) character set win1251,
    F_DRIVE varchar(255) character set win1251,
    F_COLNAME varchar(255) character set win1251,
    F_DEL integer)
RETURNS (
    ID integer,
    IDTYPE_LKP_ATYPE_F_ATYPENAME integer,
    IDMARK_LKP_MARK_F_MARKNAME integer,
    IDMODEL_LKP_MODEL_F_MODNAME integer,
    REG varchar(20),
    IDYEAR_LKP_AYEAR_F_AYEARNAME integer,
    VIN varchar(30),
    DRIVE varchar(32),
    COLNAME varchar(32),
    FULLNAME varchar(128))
AS
begin
  -- VIN, DRIVE and COLNAME fall back to REG when their filter is empty
  for select a.ID, a.TYPE, a.MARK, a.MODNAME, a.REG, a.AYEAR, a.VIN, a.DRIVE, a.COLNAME, a.FULLNAME
      from AUTO a
      where coalesce(a.DEL, 0) = coalesce(:F_DEL, 0)
        and (a.TYPE = :F_TYPE or :F_TYPE is null)
        and (a.MODNAME = :F_MODNAME or :F_MODNAME is null)
        and (a.MARK = :F_MARK or :F_MARK is null)
        and (a.AYEAR = :F_YEAR or :F_YEAR is null)
        and (upper(a.REG collate pxw_cyrl) like upper(coalesce(:F_REG, a.REG) collate pxw_cyrl)
             or a.REG is null)
        and (upper(a.VIN collate pxw_cyrl) like upper(coalesce(:F_VIN, a.REG) collate pxw_cyrl)
             or a.VIN is null)
        and (upper(a.DRIVE collate pxw_cyrl) like upper(coalesce(:F_DRIVE, a.REG) collate pxw_cyrl)
             or a.DRIVE is null)
        and (upper(a.COLNAME collate pxw_cyrl) like upper(coalesce(:F_COLNAME, a.REG) collate pxw_cyrl)
             or a.COLNAME is null)
      into :ID, :IDTYPE_LKP_ATYPE_F_ATYPENAME, :IDMARK_LKP_MARK_F_MARKNAME,
           :IDMODEL_LKP_MODEL_F_MODNAME, :REG, :IDYEAR_LKP_AYEAR_F_AYEARNAME, :VIN, :DRIVE,
           :COLNAME, :FULLNAME
  do
    suspend;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spAutoEdit -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spAutoEdit (
    OLD_ID integer,
    IDTYPE_LKP_ATYPE_F_ATYPENAME integer,
    IDMARK_LKP_MARK_F_MARKNAME integer,
    IDMODEL_LKP_MODEL_F_MODNAME integer,
    REG varchar(20),
    IDYEAR_LKP_AYEAR_F_AYEARNAME integer,
    VIN varchar(30),
    DRIVE varchar(32),
    COLNAME varchar(32),
    FULLNAME varchar(128))
RETURNS (
    ID integer)
AS
begin
  if (OLD_ID is null or OLD_ID = 0) then
    OLD_ID = (select ID from AUTO where REG = :REG);
  update or insert into AUTO (ID, TYPE, MARK, MODNAME, REG, AYEAR, VIN, DRIVE, COLNAME)
    values (:OLD_ID, :IDTYPE_LKP_ATYPE_F_ATYPENAME, :IDMARK_LKP_MARK_F_MARKNAME, :IDMODEL_LKP_MODEL_F_MODNAME, :REG, :IDYEAR_LKP_AYEAR_F_AYEARNAME, :VIN, :DRIVE, :COLNAME)
    matching (ID)
    returning ID into :ID;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spAutoEmpty -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spAutoEmpty
RETURNS (
    ID integer)
AS
begin
  update or insert into AUTO (ID)
    values (null)
    matching (ID)
    returning ID into :ID;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spAutoDel -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spAutoDel (
    ID integer)
AS
begin
  if (exists(select * from ORDERS where IDAUTO = :ID)) then
    exception AUTO_HAS_ORDER;
  delete from AUTO where ID = :ID;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spOStateOpen -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spOStateOpen
RETURNS (
    ID integer,
    STATENAME varchar(32))
AS
begin
  for select ID, STATENAME
      from OSTATE
      where AFILTER = 0
      into :ID, :STATENAME
  do
    suspend;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spOStateEdit -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spOStateEdit (
    OLD_ID integer,
    STATENAME varchar(32))
RETURNS (
    ID integer)
AS
begin
  update or insert into OSTATE (ID, STATENAME)
    values (:OLD_ID, :STATENAME)
    matching (ID)
    returning ID into :ID;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spOStateEmpty -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spOStateEmpty
RETURNS (
    ID integer)
AS
begin
  update or insert into OSTATE (ID)
    values (null)
    matching (ID)
    returning ID into :ID;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spOStateDel -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spOStateDel (
    ID integer)
AS
begin
  if (exists(select * from ORDERS where IDSTATUS = :ID)) then
    exception OSTATE_HAS_ORDER;
  delete from OSTATE where ID = :ID;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spOStateMain -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spOStateMain
RETURNS (
    ID integer,
    STATENAME varchar(32))
AS
begin
  for select ID, STATENAME
      from OSTATE
      order by AFILTER desc
      into :ID, :STATENAME
  do
    suspend;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spPayStateOpen -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spPayStateOpen
RETURNS (
    ID integer,
    STATUS varchar(30))
AS
begin
  for select ID, STATUS
      from PAYSTATE
      into :ID, :STATUS
  do
    suspend;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spPayStateEdit -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spPayStateEdit (
    OLD_ID integer,
    STATUS varchar(30))
RETURNS (
    ID integer)
AS
begin
  update or insert into PAYSTATE (ID, STATUS)
    values (:OLD_ID, :STATUS)
    matching (ID)
    returning ID into :ID;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spPayStateEmpty -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spPayStateEmpty
RETURNS (
    ID integer)
AS
begin
  update or insert into PAYSTATE (ID)
    values (null)
    matching (ID)
    returning ID into :ID;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spPayStateDel -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spPayStateDel (
    ID integer)
AS
begin
  if (exists(select * from ORDERS where PAYSTATE = :ID)) then
    exception PAYSTATE_HAS_ORDER;
  delete from PAYSTATE where ID = :ID;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spOrderOpen -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spOrderOpen (
    F_IDORDER integer,
    F_DATE_UP date,
    F_DATE_TO date,
    F_IDOSTATE integer,
    F_NUM varchar(255),
    F_IDCUST integer,
    F_REG varchar(255),
    F_IDMARK integer,
    F_IDMODEL integer,
    F_DEL integer)
RETURNS (
    ID integer,
    NUM varchar(20),
    CREATE_DATE date,
    STATUS_DATE date,
    IDSTATUS_LKP_OSTATE_F_STATENAME integer,
    PSTATUS_LKP_PAYSTATE_F_STATUS integer,
    SYS_IDCUST integer,
    DLG_IDCUST varchar(128),
    MOBI_PHONE varchar(128),
    ADDRESS varchar(1024),
    SYS_IDAUTO integer,
    DLG_FULLNAME varchar(128),
    TYPE_LKP_ATYPE_F_ATYPENAME integer,
    MODEL_LKP_MODEL_F_MODNAME integer,
    SYS_MOD_NAME varchar(50),
    MARK_LKP_MARK_F_MARKNAME integer,
    REG varchar(20),
    YEAR_LKP_AYEAR_F_AYEARNAME integer,
    VIN varchar(30),
    DRIVE varchar(30),
    COLNAME varchar(32),
    DISCOUNT float,
    RETURNZP integer,
    GUARANTEE integer,
    SUMORDER float,
    SUMPAY float,
    COMMENT varchar(1024))
AS
begin
  for select o.ID,
             o.NUM,
             o.CREATE_DATE,
             o.STATUS_DATE,
             o.IDSTATUS,
             o.PAYSTATE,
             o.IDCUST,
             c.CUSTNAME,
             c.MOBI_PHONE,
             c.ADDRESS,
             o.IDAUTO,
             a.FULLNAME,
             a.TYPE,
             a.MODNAME,
             m.MODNAME,
             a.MARK,
             a.REG,
             a.AYEAR,
             a.VIN,
             a.DRIVE,
             a.COLNAME,
             o.DISCOUNT,
             o.RETURNZP,
             o.GUARANTEE,
             o.SUMORDER,
             coalesce(o.SUMORDER, 0) - coalesce(o.SUMPAY, 0),
             o.COMMENT
      from ORDERS o
      left join CUST c on c.ID = o.IDCUST
      left join AUTO a on a.ID = o.IDAUTO
      left join MODEL m on m.ID = a.MODNAME
      where coalesce(o.DEL, 0) = coalesce(:F_DEL, 0)
        and o.CREATE_DATE between coalesce(:F_DATE_UP, o.CREATE_DATE)
                              and coalesce(:F_DATE_TO + 1, o.CREATE_DATE)
        and (o.IDSTATUS = coalesce(:F_IDOSTATE, o.IDSTATUS)
             or (:F_IDOSTATE = 7 and o.IDSTATUS < 6)
             or o.IDSTATUS is null)
        and (o.NUM like :F_NUM or o.NUM is null)
        and (o.IDCUST = coalesce(:F_IDCUST, o.IDCUST) or o.IDCUST is null)
        and (a.REG like :F_REG or a.REG is null)
        and (a.MARK = coalesce(:F_IDMARK, a.MARK) or a.MARK is null)
        and (a.MODNAME = coalesce(:F_IDMODEL, a.MODNAME) or a.MODNAME is null)
      into :ID, :NUM, :CREATE_DATE, :STATUS_DATE, :IDSTATUS_LKP_OSTATE_F_STATENAME,
           :PSTATUS_LKP_PAYSTATE_F_STATUS, :SYS_IDCUST, :DLG_IDCUST, :MOBI_PHONE, :ADDRESS,
           :SYS_IDAUTO, :DLG_FULLNAME, :TYPE_LKP_ATYPE_F_ATYPENAME, :MODEL_LKP_MODEL_F_MODNAME,
           :SYS_MOD_NAME, :MARK_LKP_MARK_F_MARKNAME, :REG, :YEAR_LKP_AYEAR_F_AYEARNAME, :VIN,
           :DRIVE, :COLNAME, :DISCOUNT, :RETURNZP, :GUARANTEE, :SUMORDER, :SUMPAY, :COMMENT
  do
    suspend;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spOrderEdit -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spOrderEdit (
    OLD_ID integer,
    NUM varchar(20),
    CREATE_DATE date,
    STATUS_DATE date,
    IDSTATUS_LKP_OSTATE_F_STATENAME integer,
    PSTATUS_LKP_PAYSTATE_F_STATUS integer,
    SYS_IDCUST integer,
    DLG_IDCUST varchar(128),
    MOBI_PHONE varchar(128),
    ADDRESS varchar(1024),
    SYS_IDAUTO integer,
    DLG_FULLNAME varchar(128),
    TYPE_LKP_ATYPE_F_ATYPENAME integer,
    MODEL_LKP_MODEL_F_MODNAME integer,
    SYS_MOD_NAME varchar(30),
    MARK_LKP_MARK_F_MARKNAME integer,
    REG varchar(20),
    YEAR_LKP_AYEAR_F_AYEARNAME integer,
    VIN varchar(30),
    DRIVE varchar(30),
    COLNAME varchar(32),
    DISCOUNT float,
    RETURNZP integer,
    GUARANTEE integer,
    SUMORDER float,
    SUMPAY float,
    COMMENT varchar(1024))
RETURNS (
    ID integer)
AS
begin
  execute procedure spAutoEdit(:SYS_IDAUTO, :TYPE_LKP_ATYPE_F_ATYPENAME, :MARK_LKP_MARK_F_MARKNAME,
      :MODEL_LKP_MODEL_F_MODNAME, :REG, :YEAR_LKP_AYEAR_F_AYEARNAME, :VIN, :DRIVE, :COLNAME, null)
    returning_values :SYS_IDAUTO;
  execute procedure spCustEdit2(:SYS_IDCUST, :DLG_IDCUST, :MOBI_PHONE, :ADDRESS)
    returning_values :SYS_IDCUST;
  update or insert into ORDERS (ID, NUM, CREATE_DATE, STATUS_DATE, IDSTATUS, IDCUST, IDAUTO, DISCOUNT, RETURNZP, GUARANTEE, COMMENT)
    values (:OLD_ID, :NUM, :CREATE_DATE, :STATUS_DATE, :IDSTATUS_LKP_OSTATE_F_STATENAME, :SYS_IDCUST, :SYS_IDAUTO, :DISCOUNT, :RETURNZP, :GUARANTEE, :COMMENT)
    matching (ID)
    returning ID into :ID;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spOrderEmpty -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spOrderEmpty
RETURNS (
    ID integer)
AS
begin
  update or insert into ORDERS (ID)
    values (null)
    matching (ID)
    returning ID into :ID;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spOrderDel -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spOrderDel (
    ID integer)
AS
DECLARE VARIABLE AIDSTATUS integer;
DECLARE VARIABLE ADEL integer;
begin
  if (exists(select * from PAY where IDOBJECT = :ID and PURPOSE = 1)) then
    exception ORDER_HAS_PAY;
  select IDSTATUS, DEL from ORDERS where ID = :ID into :AIDSTATUS, :ADEL;
  if (AIDSTATUS = 1 or ADEL = 1) then
  begin
    update ORDERS set IDAUTO = null where ID = :ID;
    update ORDERS set IDCUST = null where ID = :ID;
    delete from ORDPARTS where IDORDER = :ID;
    delete from ORDMAT where IDORDER = :ID;
    delete from ORDSERV where IDORDER = :ID;
    delete from ORDERS where ID = :ID;
  end
  else if (AIDSTATUS > 1) then
  begin
    update ORDERS set IDAUTO = null where ID = :ID;
    update ORDERS set IDCUST = null where ID = :ID;
    delete from ORDPARTS where IDORDER = :ID;
    delete from ORDMAT where IDORDER = :ID;
    delete from ORDSERV where IDORDER = :ID;
    update ORDERS set DEL = 1 where ID = :ID;
  end
end^
SET TERM ; ^
COMMIT;

;--------------------------- spOrderMatSumm -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spOrderMatSumm (
    IDORDER integer)
RETURNS (
    SUMM_BRUTTO float,
    SUMM_NETTO float)
AS
begin
end^
SET TERM ; ^
COMMIT;

;--------------------------- spOrderServSumm -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spOrderServSumm (
    IDORDER integer)
RETURNS (
    SUMM_BRUTTO float,
    SUMM_NETTO float)
AS
begin
end^
SET TERM ; ^
COMMIT;

;--------------------------- spOrdPartsOpen -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spOrdPartsOpen (
    AIDORDER integer)
RETURNS (
    ID integer,
    SYS_IDORDER integer,
    PARTNAME varchar(50),
    CNT integer,
    COMMENT varchar(128))
AS
begin
  for select ID, :AIDORDER, PARTNAME, CNT, COMMENT
      from ORDPARTS
      where (IDORDER = coalesce(:AIDORDER, IDORDER) or IDORDER is null)
      into :ID, :SYS_IDORDER, :PARTNAME, :CNT, :COMMENT
  do
    suspend;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spOrdPartsEdit -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spOrdPartsEdit (
    OLD_ID integer,
    IDORDER integer,
    PARTNAME varchar(50),
    CNT integer,
    COMMENT varchar(128))
RETURNS (
    ID integer)
AS
begin
  update or insert into ORDPARTS (ID, IDORDER, PARTNAME, CNT, COMMENT)
    values (:OLD_ID, :IDORDER, :PARTNAME, :CNT, :COMMENT)
    matching (ID)
    returning ID into :ID;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spOrdPartsEmpty -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spOrdPartsEmpty
RETURNS (
    ID integer)
AS
begin
  update or insert into ORDPARTS (ID)
    values (null)
    matching (ID)
    returning ID into :ID;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spOrdPartsDel -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spOrdPartsDel (
    ID integer)
AS
begin
  delete from ORDPARTS where ID = :ID;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spOrdServOpen -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spOrdServOpen (
    AIDORDER integer)
RETURNS (
    ID integer,
    SYS_IDORDER integer,
    IDSERV_LKP_SERV_F_SERVNAME integer,
    OHOURS float,
    HOURS float,
    COST float,
    SUMM0 float,
    NDS float,
    OUTNDS float,
    DISCOUNT float,
    SUMM float,
    IDEMPL_LKP_EMPL_F_EMPLNAME integer)
AS
begin
  -- OHOURS gives the norm of the service, HOURS the hours of the line
  for select os.ID,
             :AIDORDER,
             os.IDSERV,
             s.HOURS,
             os.OHOURS,
             s.COST,
             coalesce(s.COST, 0) / coalesce(s.HOURS, 1) * coalesce(os.OHOURS, 1),
             os.NDS,
             os.OUTNDS,
             os.DISCOUNT,
             coalesce(s.COST, 0) / coalesce(s.HOURS, 1) * coalesce(os.OHOURS, 1)
           * (1 - coalesce(os.DISCOUNT, 0) / 100),
             os.IDEMPL
      from ORDSERV os
      left join SERV s on s.ID = os.IDSERV
      where (os.IDORDER = coalesce(:AIDORDER, os.IDORDER) or os.IDORDER is null)
      into :ID, :SYS_IDORDER, :IDSERV_LKP_SERV_F_SERVNAME, :OHOURS, :HOURS, :COST, :SUMM0, :NDS,
           :OUTNDS, :DISCOUNT, :SUMM, :IDEMPL_LKP_EMPL_F_EMPLNAME
  do
    suspend;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spOrdServEdit -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spOrdServEdit (
    OLD_ID integer,
    SYS_IDORDER integer,
    IDSERV_LKP_SERV_F_SERVNAME integer,
    OHOURS float,
    HOURS float,
    COST float,
    SUMM0 float,
    NDS float,
    OUTNDS float,
    DISCOUNT float,
    SUMM float,
    IDEMPL_LKP_EMPL_F_EMPLNAME integer)
RETURNS (
    ID integer)
AS
begin
  update or insert into ORDSERV (ID, IDORDER, IDSERV, OHOURS, DISCOUNT, IDEMPL)
    values (:OLD_ID, :SYS_IDORDER, :IDSERV_LKP_SERV_F_SERVNAME, :OHOURS, :DISCOUNT, :IDEMPL_LKP_EMPL_F_EMPLNAME)
    matching (ID)
    returning ID into :ID;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spOrdServEmpty -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spOrdServEmpty
RETURNS (
    ID integer)
AS
begin
  update or insert into ORDSERV (ID)
    values (null)
    matching (ID)
    returning ID into :ID;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spOrdServDel -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spOrdServDel (
    ID integer)
AS
begin
  delete from ORDSERV where ID = :ID;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spOrdServValuesEdit -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spOrdServValuesEdit (
    OLD_ID integer,
    OHOURS float,
    DISCOUNT float)
RETURNS (
    ID integer)
AS
begin
  update or insert into ORDSERV (ID, OHOURS, DISCOUNT)
    values (:OLD_ID, :OHOURS, :DISCOUNT)
    matching (ID)
    returning ID into :ID;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spOrdServUpdDiscount -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spOrdServUpdDiscount (
    IDORDER integer,
    DISCOUNT float)
AS
begin
  update ORDSERV set DISCOUNT = :DISCOUNT where IDORDER = :IDORDER;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spOrdServUpdEmployee -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spOrdServUpdEmployee (
    IDORDER integer,
    IDEMPL integer)
AS
begin
  update ORDSERV set IDEMPL = :IDEMPL where IDORDER = :IDORDER;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spOrdMatOpen -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spOrdMatOpen (
    AIDORDER integer)
RETURNS (
    ID integer,
    SYS_IDORDER integer,
    IDMAT_LKP_MAT_F_MATNAME integer,
    OCNT integer,
    COST float,
    SUMM0 float,
    NDS float,
    OUTNDS float,
    DISCOUNT float,
    SUMM float,
    IDEMPL_LKP_EMPL_F_EMPLNAME integer)
AS
begin
  for select om.ID,
             :AIDORDER,
             om.IDMAT,
             om.OCNT,
             coalesce(om.COST, m.COST),
             coalesce(m.COST, 0) * coalesce(om.OCNT, 1),
             om.NDS,
             om.OUTNDS,
             om.DISCOUNT,
             coalesce(m.COST, 0) * coalesce(om.OCNT, 1) * (1 - coalesce(om.DISCOUNT, 0) / 100),
             om.IDEMPL
      from ORDMAT om
      left join MAT m on m.ID = om.IDMAT
      where (om.IDORDER = coalesce(:AIDORDER, om.IDORDER) or om.IDORDER is null)
      into :ID, :SYS_IDORDER, :IDMAT_LKP_MAT_F_MATNAME, :OCNT, :COST, :SUMM0, :NDS, :OUTNDS,
           :DISCOUNT, :SUMM, :IDEMPL_LKP_EMPL_F_EMPLNAME
  do
    suspend;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spOrdMatEdit -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spOrdMatEdit (
    OLD_ID integer,
    SYS_IDORDER integer,
    IDMAT_LKP_MAT_F_MATNAME integer,
    OCNT integer,
    COST float,
    SUMM0 float,
    NDS float,
    OUTNDS float,
    DISCOUNT float,
    SUMM float,
    IDEMPL_LKP_EMPL_F_EMPLNAME integer)
RETURNS (
    ID integer)
AS
begin
  update or insert into ORDMAT (ID, IDORDER, IDMAT, OCNT, COST, SUMM, DISCOUNT, IDEMPL)
    values (:OLD_ID, :SYS_IDORDER, :IDMAT_LKP_MAT_F_MATNAME, :OCNT, :COST, :SUMM, :DISCOUNT, :IDEMPL_LKP_EMPL_F_EMPLNAME)
    matching (ID)
    returning ID into :ID;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spOrdMatEmpty -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spOrdMatEmpty
RETURNS (
    ID integer)
AS
begin
  update or insert into ORDMAT (ID)
    values (null)
    matching (ID)
    returning ID into :ID;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spOrdMatDel -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spOrdMatDel (
    ID integer)
AS
begin
  delete from ORDMAT where ID = :ID;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spOrdMatValuesEdit -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spOrdMatValuesEdit (
    OLD_ID integer,
    IDORDER integer,
    OCNT integer,
    DISCOUNT float)
RETURNS (
    ID integer)
AS
begin
  update or insert into ORDMAT (ID, IDORDER, OCNT, DISCOUNT)
    values (:OLD_ID, :IDORDER, :OCNT, :DISCOUNT)
    matching (ID)
    returning ID into :ID;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spOrdMatServOpen -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spOrdMatServOpen (
    AIDORDER integer)
RETURNS (
    ID integer,
    SYS_IDORDER integer,
    SERVNAME varchar(32),
    OHOURS float,
    HOURS float,
    COST float,
    SUMM float,
    NDS float,
    OUTNDS float,
    DISCOUNT float,
    IDEMPL_LKP_EMPL_F_EMPLNAME integer)
AS
begin
  -- services first, then materials; the count of a material goes into OHOURS
  for select os.ID, os.SYS_IDORDER, s.SERVNAME, os.OHOURS, os.HOURS, os.COST, os.SUMM,
             os.NDS, os.OUTNDS, os.DISCOUNT, os.IDEMPL_LKP_EMPL_F_EMPLNAME
      from spOrdServOpen(:AIDORDER) os
      join SERV s on s.ID = os.IDSERV_LKP_SERV_F_SERVNAME
      union all
      select om.ID, om.SYS_IDORDER, m.MATNAME, om.OCNT, 1, om.COST, om.SUMM,
             om.NDS, om.OUTNDS, om.DISCOUNT, om.IDEMPL_LKP_EMPL_F_EMPLNAME
      from spOrdMatOpen(:AIDORDER) om
      join MAT m on m.ID = om.IDMAT_LKP_MAT_F_MATNAME
      into :ID, :SYS_IDORDER, :SERVNAME, :OHOURS, :HOURS, :COST, :SUMM,
           :NDS, :OUTNDS, :DISCOUNT, :IDEMPL_LKP_EMPL_F_EMPLNAME
  do
    suspend;
end^
SET TERM ; ^
COMMIT;

/*
;--------------------------- spOrderPrint -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spOrderPrint (
    AIDORDER integer)
RETURNS (
    NUM varchar(20),
    CREATE_DATE date,
    CUSTNAME varchar(128),
    FULLNAME varchar(128),
    SUMORDER float,
    SUMPAY float)
AS
begin
  for select o.NUM, o.CREATE_DATE, c.CUSTNAME, a.FULLNAME, o.SUMORDER, o.SUMPAY
      from ORDERS o
      left join CUST c on c.ID = o.IDCUST
      left join AUTO a on a.ID = o.IDAUTO
      where o.ID = :AIDORDER
      into :NUM, :CREATE_DATE, :CUSTNAME, :FULLNAME, :SUMORDER, :SUMPAY
  do
    suspend;
end^
SET TERM ; ^
COMMIT;
*/

;--------------------------- spPayStatusOpen -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spPayStatusOpen
RETURNS (
    ID integer,
    STATUS varchar(30))
AS
begin
  for select ID, STATUS
      from PAYSTATUS
      into :ID, :STATUS
  do
    suspend;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spPayStatusEdit -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spPayStatusEdit (
    OLD_ID integer,
    STATUS varchar(30))
RETURNS (
    ID integer)
AS
begin
  update or insert into PAYSTATUS (ID, STATUS)
    values (:OLD_ID, :STATUS)
    matching (ID)
    returning ID into :ID;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spPayStatusEmpty -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spPayStatusEmpty
RETURNS (
    ID integer)
AS
begin
  -- the row goes to PAYSTATE
  update or insert into PAYSTATE (ID)
    values (null)
    matching (ID)
    returning ID into :ID;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spPayStatusDel -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spPayStatusDel (
    ID integer)
AS
begin
  -- the guard looks at STOREMAT, the delete at PAYSTATE
  if (exists(select * from STOREMAT where PAYSTATUS = :ID)) then
    exception PAYSTATUS_HAS_STOREMAT;
  delete from PAYSTATE where ID = :ID;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spStoreMatOpen -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spStoreMatOpen (
    IDSTORE integer)
RETURNS (
    ID integer,
    NUM varchar(32),
    STATUS_LKP_PAYSTATUS_F_STATUS integer,
    MATNAME varchar(64),
    SYS_IDMAT integer,
    ARTICUL varchar(64),
    SCODE varchar(64),
    QUANTITY float,
    PRICEBUY float,
    PRICESELL float,
    SUMMBUY float,
    SUMMSELL float)
AS
DECLARE VARIABLE AIDSTOREMAT integer;
begin
  select IDSTOREMAT from STORE where ID = :IDSTORE into :AIDSTOREMAT;
  for select s.ID,
             sm.NUM,
             sm.PAYSTATUS,
             m.MATNAME,
             s.IDMAT,
             m.ARTICUL,
             m.SCODE,
             s.QUANTITY,
             s.PRICEBUY,
             s.PRICESELL,
             s.QUANTITY * s.PRICEBUY,
             s.QUANTITY * s.PRICESELL
      from STORE s
      join STOREMAT sm on sm.ID = s.IDSTOREMAT
      join MAT m on m.ID = s.IDMAT
      where s.IDSTOREMAT = :AIDSTOREMAT
        and coalesce(s.DEL, 0) = 0
      into :ID, :NUM, :STATUS_LKP_PAYSTATUS_F_STATUS, :MATNAME, :SYS_IDMAT, :ARTICUL, :SCODE,
           :QUANTITY, :PRICEBUY, :PRICESELL, :SUMMBUY, :SUMMSELL
  do
    suspend;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spStoreMatEdit -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spStoreMatEdit (
    OLD_ID integer,
    NUM varchar(32),
    STATUS_LKP_PAYSTATUS_F_STATUS integer,
    MATNAME varchar(64),
    SYS_IDMAT integer,
    ARTICUL varchar(64),
    SCODE varchar(64),
    QUANTITY float,
    PRICEBUY float,
    PRICESELL float,
    SUMMBUY float,
    SUMMSELL float)
RETURNS (
    ID integer)
AS
begin
  update or insert into STORE (ID, IDMAT, QUANTITY, PRICEBUY, PRICESELL)
    values (:OLD_ID, :SYS_IDMAT, :QUANTITY, :PRICEBUY, :PRICESELL)
    matching (ID)
    returning ID into :ID;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spStoreMatEmpty -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spStoreMatEmpty
RETURNS (
    ID integer)
AS
begin
  update or insert into STOREMAT (ID)
    values (null)
    matching (ID)
    returning ID into :ID;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spStoreMatDel -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spStoreMatDel (
    ID integer)
AS
begin
  update STORE set DEL = 1 where ID = :ID;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spStoreOpen -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spStoreOpen (
    F_DATE_UP date,
    F_DATE_TO date,
    F_OTYPE integer,
    F_ARTICUL varchar(255) character set win1251,
    F_CODE varchar(255) character set win1251,
    F_NAME varchar(255) character set win1251,
    F_IDCUST integer,
    F_DEL integer)
RETURNS (
    ID integer,
    SYS_IDSTOREMAT integer,
    NUM varchar(32),
    STATUS_LKP_PAYSTATUS_F_STATUS integer,
    OPER_DATE timestamp,
    IDOTYPE_LKP_OTYPE_F_OTYPENAME integer,
    SUPPORT varchar(1024),
    COMMENT varchar(1024),
    ARTICUL varchar(30),
    SCODE varchar(30),
    IDMAT_LKP_MAT_F_MATNAME integer,
    QUANTITY float,
    PRICEBUY float,
    PRICESELL float,
    SUMMBUY float,
    SUMMSELL float,
    IDCUST_LKP_CUST_F_CUSTNAME integer)
AS
begin
  for select s.ID,
             s.IDSTOREMAT,
             sm.NUM,
             sm.PAYSTATUS,
             sm.OPER_DATE,
             sm.IDOTYPE,
             sm.SUPPORT,
             sm.COMMENT,
             m.ARTICUL,
             m.SCODE,
             s.IDMAT,
             s.QUANTITY,
             s.PRICEBUY,
             s.PRICESELL,
             s.QUANTITY * s.PRICEBUY,
             s.QUANTITY * s.PRICESELL,
             sm.IDCUST
      from STORE s
      join STOREMAT sm on sm.ID = s.IDSTOREMAT
      left join MAT m on m.ID = s.IDMAT
      left join CUST c on c.ID = sm.IDCUST
      where coalesce(s.DEL, 0) = coalesce(:F_DEL, 0)
        and (sm.OPER_DATE between coalesce(:F_DATE_UP, sm.OPER_DATE)
                              and coalesce(:F_DATE_TO + 1, sm.OPER_DATE)
             or sm.OPER_DATE is null)
        and (sm.IDOTYPE = coalesce(:F_OTYPE, sm.IDOTYPE) or sm.IDOTYPE is null)
        and (upper(m.ARTICUL collate pxw_cyrl) like upper(coalesce(:F_ARTICUL, m.ARTICUL) collate pxw_cyrl)
             or m.ARTICUL is null)
        and (upper(m.SCODE collate pxw_cyrl) like upper(coalesce(:F_CODE, m.SCODE) collate pxw_cyrl)
             or m.SCODE is null)
        and (upper(m.MATNAME collate pxw_cyrl) like upper(coalesce(:F_NAME, m.MATNAME) collate pxw_cyrl)
             or m.MATNAME is null)
        and (sm.IDCUST = coalesce(:F_IDCUST, sm.IDCUST) or sm.IDCUST is null)
      into :ID, :SYS_IDSTOREMAT, :NUM, :STATUS_LKP_PAYSTATUS_F_STATUS, :OPER_DATE,
           :IDOTYPE_LKP_OTYPE_F_OTYPENAME, :SUPPORT, :COMMENT, :ARTICUL, :SCODE,
           :IDMAT_LKP_MAT_F_MATNAME, :QUANTITY, :PRICEBUY, :PRICESELL, :SUMMBUY, :SUMMSELL,
           :IDCUST_LKP_CUST_F_CUSTNAME
  do
    suspend;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spStoreEdit -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spStoreEdit (
    OLD_ID integer,
    SYS_IDSTOREMAT integer,
    NUM varchar(32),
    STATUS_LKP_PAYSTATUS_F_STATUS integer,
    OPER_DATE timestamp,
    IDOTYPE_LKP_OTYPE_F_OTYPENAME integer,
    SUPPORT varchar(1024),
    COMMENT varchar(1024),
    ARTICUL varchar(30),
    SCODE varchar(30),
    IDMAT_LKP_MAT_F_MATNAME integer,
    QUANTITY float,
    PRICEBUY float,
    PRICESELL float,
    SUMMBUY float,
    SUMMSELL float,
    IDCUST_LKP_CUST_F_CUSTNAME integer)
RETURNS (
    ID integer)
AS
begin
  update or insert into STOREMAT (ID, NUM, OPER_DATE, IDOTYPE, SUPPORT, IDCUST, COMMENT)
    values (:SYS_IDSTOREMAT, :NUM, :OPER_DATE, :IDOTYPE_LKP_OTYPE_F_OTYPENAME, :SUPPORT, :IDCUST_LKP_CUST_F_CUSTNAME, :COMMENT)
    matching (ID)
    returning ID into :SYS_IDSTOREMAT;
  update or insert into STORE (ID, IDSTOREMAT, IDMAT)
    values (:OLD_ID, :SYS_IDSTOREMAT, :IDMAT_LKP_MAT_F_MATNAME)
    matching (ID)
    returning ID into :ID;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spStoreEmpty -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spStoreEmpty
RETURNS (
    ID integer)
AS
begin
  update or insert into STORE (ID)
    values (null)
    matching (ID)
    returning ID into :ID;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spStoreDel -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spStoreDel (
    ID integer)
AS
begin
  update STORE set DEL = 1 where ID = :ID;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spStoreEmptyDel -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spStoreEmptyDel (
    IDSTOREMAT integer)
RETURNS (
    ID integer)
AS
begin
  delete from STORE where IDSTOREMAT = :IDSTOREMAT and coalesce(IDMAT, 0) = 0;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spStoreValuesEdit -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spStoreValuesEdit (
    OLD_ID integer,
    QUANTITY float,
    PRICEBUY float,
    PRICESELL float)
RETURNS (
    ID integer)
AS
begin
  update or insert into STORE (ID, QUANTITY, PRICEBUY, PRICESELL)
    values (:OLD_ID, :QUANTITY, :PRICEBUY, :PRICESELL)
    matching (ID)
    returning ID into :ID;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spPTypeOpen -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spPTypeOpen
RETURNS (
    ID integer,
    PAYNAME varchar(64))
AS
begin
  for select ID, PAYNAME
      from PAYTYPE
      into :ID, :PAYNAME
  do
    suspend;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spPTypeEdit -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spPTypeEdit (
    OLD_ID integer,
    PAYNAME varchar(64))
RETURNS (
    ID integer)
AS
begin
  update or insert into PAYTYPE (ID, PAYNAME)
    values (:OLD_ID, :PAYNAME)
    matching (ID)
    returning ID into :ID;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spPTypeEmpty -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spPTypeEmpty
RETURNS (
    ID integer)
AS
begin
  update or insert into PAYTYPE (ID)
    values (null)
    matching (ID)
    returning ID into :ID;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spPTypeDel -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spPTypeDel (
    ID integer)
AS
begin
  if (exists(select * from PAY where PTYPE = :ID)) then
    exception PTYPE_HAS_PAY;
  delete from PAYTYPE where ID = :ID;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spPurposeOpen -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spPurposeOpen (
    IDPAYTYPE integer = null)
RETURNS (
    ID integer,
    PURPOSE varchar(64))
AS
begin
  for select ID, PURPOSE
      from PURPOSE
      where (PAYTYPE_LKP_PAYTYPE_F_PAYNAME = :IDPAYTYPE or :IDPAYTYPE is null)
      into :ID, :PURPOSE
  do
    suspend;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spPurposeEdit -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spPurposeEdit (
    OLD_ID integer,
    PURPOSE varchar(64))
RETURNS (
    ID integer)
AS
begin
  update or insert into PURPOSE (ID, PURPOSE)
    values (:OLD_ID, :PURPOSE)
    matching (ID)
    returning ID into :ID;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spPurposeEmpty -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spPurposeEmpty
RETURNS (
    ID integer)
AS
begin
  update or insert into PURPOSE (ID)
    values (null)
    matching (ID)
    returning ID into :ID;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spPurposeDel -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spPurposeDel (
    ID integer)
AS
begin
  if (exists(select * from PAY where PURPOSE = :ID)) then
    exception PURPOSE_HAS_PAY;
  delete from PURPOSE where ID = :ID;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spPayOpen -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spPayOpen (
    F_DATE_UP date,
    F_DATE_TO date,
    F_PAYNUM varchar(255) character set win1251,
    F_PTYPE integer,
    F_PURPOSE integer,
    F_CUST varchar(255) character set win1251,
    F_OBJ integer,
    F_SUMM float,
    F_NAL integer,
    F_DEL integer)
RETURNS (
    ID integer,
    PAYNUM varchar(32),
    PAY_DATE date,
    PTYPE_LKP_PAYTYPE_F_PAYNAME integer,
    PURPOSE_LKP_PURPOSE_F_PURPOSE integer,
    IDCUST_LKP_CUST_F_CUSTNAME integer,
    IDOBJ_LKP_OBJECT_F_OBJNAME integer,
    OBJTEXT varchar(100),
    SUMM float,
    NAME_LKP_NAL_F_NAME varchar(32),
    COMMENT varchar(1024))
AS
begin
  for select p.ID,
             p.PAYNUM,
             p.PAYDATE,
             p.PTYPE,
             p.PURPOSE,
             p.IDCUST,
             p.IDOBJECT,
             p.OBJTEXT,
             p.SUMM,
             p.NAL,
             p.COMMENT
      from PAY p
      left join CUST c on c.ID = p.IDCUST
      where coalesce(p.DEL, 0) = coalesce(:F_DEL, 0)
        and (p.PAYDATE between coalesce(:F_DATE_UP, p.PAYDATE)
                           and coalesce(:F_DATE_TO + 1, p.PAYDATE)
             or p.PAYDATE is null)
        and (upper(p.PAYNUM collate pxw_cyrl) like upper(coalesce(:F_PAYNUM, p.PAYNUM) collate pxw_cyrl)
             or p.PAYNUM is null)
        and (p.PTYPE = coalesce(:F_PTYPE, p.PTYPE) or p.PTYPE is null)
        and (p.PURPOSE = coalesce(:F_PURPOSE, p.PURPOSE) or p.PURPOSE is null)
        and (upper(c.CUSTNAME collate pxw_cyrl) like upper(coalesce(:F_CUST, c.CUSTNAME) collate pxw_cyrl)
             or c.CUSTNAME is null)
        and (p.NAL = coalesce(:F_NAL, p.NAL) or p.NAL is null)
      into :ID, :PAYNUM, :PAY_DATE, :PTYPE_LKP_PAYTYPE_F_PAYNAME, :PURPOSE_LKP_PURPOSE_F_PURPOSE,
           :IDCUST_LKP_CUST_F_CUSTNAME, :IDOBJ_LKP_OBJECT_F_OBJNAME, :OBJTEXT, :SUMM,
           :NAME_LKP_NAL_F_NAME, :COMMENT
  do
    suspend;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spPayEdit -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spPayEdit (
    OLD_ID integer,
    PAYNUM varchar(32),
    PAY_DATE date,
    PTYPE_LKP_PAYTYPE_F_PAYNAME integer,
    PURPOSE_LKP_PURPOSE_F_PURPOSE integer,
    IDCUST_LKP_CUST_F_CUSTNAME integer,
    IDOBJ_LKP_OBJECT_F_OBJNAME integer,
    OBJTEXT varchar(100),
    SUMM float,
    NAL integer,
    COMMENT varchar(1024))
RETURNS (
    ID integer)
AS
begin
  update or insert into PAY (ID, PAYNUM, PAYDATE, PTYPE, PURPOSE, IDOBJECT, IDCUST, SUMM, NAL, COMMENT)
    values (:OLD_ID, :PAYNUM, :PAY_DATE, :PTYPE_LKP_PAYTYPE_F_PAYNAME, :PURPOSE_LKP_PURPOSE_F_PURPOSE, :IDOBJ_LKP_OBJECT_F_OBJNAME, :IDCUST_LKP_CUST_F_CUSTNAME, :SUMM, :NAL, :COMMENT)
    matching (ID)
    returning ID into :ID;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spPayEmpty -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spPayEmpty
RETURNS (
    ID integer)
AS
begin
  update or insert into PAY (ID)
    values (null)
    matching (ID)
    returning ID into :ID;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spPayDel -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spPayDel (
    ID integer)
AS
begin
  update PAY set DEL = 1 where ID = :ID;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spObjectOpen -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spObjectOpen (
    AIDPAYTYPE integer,
    AIDCUST integer = null,
    AOBJ integer = null)
RETURNS (
    ID integer,
    OBJNAME varchar(128),
    IDCUST integer,
    PAYDIFF float)
AS
begin
  if (AIDPAYTYPE = 1) then
    for select o.ID, o.NUM, o.IDCUST,
               iif(:AOBJ is null, coalesce(o.SUMORDER, 0) - coalesce(o.SUMPAY, 0), o.SUMPAY)
        from ORDERS o
        where (:AOBJ is null and o.PAYSTATE <> 3 and o.IDCUST = coalesce(:AIDCUST, o.IDCUST))
           or o.ID = :AOBJ
        into :ID, :OBJNAME, :IDCUST, :PAYDIFF
    do
      suspend;
  else if (AIDPAYTYPE = 2) then
    for select s.ID, s.NUM, s.IDCUST, coalesce(s.SUMSTORE, 0) - coalesce(s.SUMPAY, 0)
        from STOREMAT s
        where s.IDOTYPE = 2
          and ((:AOBJ is null and s.PAYSTATUS <> 3 and s.IDCUST = coalesce(:AIDCUST, s.IDCUST))
               or s.ID = :AOBJ)
        into :ID, :OBJNAME, :IDCUST, :PAYDIFF
    do
      suspend;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spObjectEdit -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spObjectEdit (
    OLD_ID integer,
    OBJNAME varchar(128),
    IDCUST integer,
    PAYDIFF float)
RETURNS (
    ID integer)
AS
begin
end^
SET TERM ; ^
COMMIT;

;--------------------------- spObjectEmpty -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spObjectEmpty
RETURNS (
    ID integer)
AS
begin
end^
SET TERM ; ^
COMMIT;

;--------------------------- spObjectDel -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spObjectDel (
    ID integer)
AS
begin
end^
SET TERM ; ^
COMMIT;

;--------------------------- spClientsOpen -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spClientsOpen (
    IDPAYTYPE integer,
    IDCUST integer = null,
    IDOBJ integer = null)
RETURNS (
    ID integer,
    CUSTNAME varchar(128))
AS
begin
  if (IDPAYTYPE = 1) then
    for select distinct c.ID, c.CUSTNAME
        from ORDERS o
        join CUST c on c.ID = o.IDCUST
        where (:IDOBJ is null and (o.PAYSTATE <> 3 or o.IDCUST = :IDCUST))
           or o.ID = :IDOBJ
        into :ID, :CUSTNAME
    do
      suspend;
  else if (IDPAYTYPE = 2) then
    for select distinct c.ID, c.CUSTNAME
        from STOREMAT s
        join CUST c on c.ID = s.IDCUST
        where (:IDOBJ is null and s.PAYSTATUS <> 3)
           or s.ID = :IDOBJ
        into :ID, :CUSTNAME
    do
      suspend;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spClientsEdit -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spClientsEdit (
    OLD_ID integer,
    CUSTNAME varchar(128))
RETURNS (
    ID integer)
AS
begin
end^
SET TERM ; ^
COMMIT;

;--------------------------- spClientsEmpty -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spClientsEmpty
RETURNS (
    ID integer)
AS
begin
end^
SET TERM ; ^
COMMIT;

;--------------------------- spClientsDel -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spClientsDel (
    ID integer)
AS
begin
end^
SET TERM ; ^
COMMIT;

;--------------------------- spSalaryOpen -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spSalaryOpen (
    F_DATE_UP date,
    F_DATE_TO date,
    F_EMPLNANE varchar(255) character set win1251)
RETURNS (
    ID integer,
    PAYNUM varchar(32),
    PAY_DATE date,
    IDEMPL_LKP_EMPL_F_EMPLNAME integer,
    SUMM float,
    COMMENT varchar(255))
AS
begin
  for select s.ID, s.PAYNUM, s.PAY_DATE, s.IDEMPL, s.SUMM, s.COMMENT
      from SALARY s
      left join EMPLS e on e.ID = s.IDEMPL
      where (s.PAY_DATE between coalesce(:F_DATE_UP, s.PAY_DATE)
                            and coalesce(:F_DATE_TO + 1, s.PAY_DATE)
             or s.PAY_DATE is null)
        and (upper(e.EMPLNAME collate pxw_cyrl) like upper(coalesce(:F_EMPLNANE, e.EMPLNAME) collate pxw_cyrl)
             or e.EMPLNAME is null)
      into :ID, :PAYNUM, :PAY_DATE, :IDEMPL_LKP_EMPL_F_EMPLNAME, :SUMM, :COMMENT
  do
    suspend;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spSalaryEdit -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spSalaryEdit (
    OLD_ID integer,
    PAYNUM varchar(32),
    PAY_DATE date,
    IDEMPL_LKP_EMPL_F_EMPLNAME integer,
    SUMM float,
    COMMENT varchar(255))
RETURNS (
    ID integer)
AS
begin
  update or insert into SALARY (ID, PAYNUM, PAY_DATE, IDEMPL, SUMM, COMMENT)
    values (:OLD_ID, :PAYNUM, :PAY_DATE, :IDEMPL_LKP_EMPL_F_EMPLNAME, :SUMM, :COMMENT)
    matching (ID)
    returning ID into :ID;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spSalaryEmpty -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spSalaryEmpty
RETURNS (
    ID integer)
AS
begin
  update or insert into SALARY (ID)
    values (null)
    matching (ID)
    returning ID into :ID;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spSalaryDel -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spSalaryDel (
    ID integer)
AS
begin
  delete from SALARY where ID = :ID;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spOrdersDetail -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spOrdersDetail (
    F_DATE_UP date,
    F_DATE_TO date)
RETURNS (
    ID integer,
    PAYNUM varchar(32),
    PAY_DATE date,
    IDEMPL_LKP_EMPL_F_EMPLNAME integer,
    SUMM float,
    COMMENT varchar(255))
AS
begin
  ID = null;
  PAYNUM = null;
  PAY_DATE = F_DATE_TO;
  COMMENT = 'MAT';
  for select om.IDEMPL, om.SUMM * e.PERCMAT / 100
      from ORDMAT om
      join EMPLS e on e.ID = om.IDEMPL
      join ORDERS o on o.ID = om.IDORDER
      where o.IDSTATUS = 6
        and o.STATUS_DATE between coalesce(:F_DATE_UP, o.STATUS_DATE)
                              and coalesce(:F_DATE_TO + 1, o.STATUS_DATE)
      into :IDEMPL_LKP_EMPL_F_EMPLNAME, :SUMM
  do
    suspend;
  COMMENT = 'SERV';
  for select os.IDEMPL, os.SUMM * e.PERCSERV / 100
      from ORDSERV os
      join EMPLS e on e.ID = os.IDEMPL
      join ORDERS o on o.ID = os.IDORDER
      where o.IDSTATUS = 6
        and o.STATUS_DATE between coalesce(:F_DATE_UP, o.STATUS_DATE)
                              and coalesce(:F_DATE_TO + 1, o.STATUS_DATE)
      into :IDEMPL_LKP_EMPL_F_EMPLNAME, :SUMM
  do
    suspend;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spSalaryDetail -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spSalaryDetail (
    F_DATE_UP date,
    F_DATE_TO date)
RETURNS (
    ID integer,
    IDEMPL_LKP_EMPL_F_EMPLNAME integer,
    SUMM float)
AS
begin
  ID = null;
  for select IDEMPL, sum(SUMM)
      from SALARY
      where PAY_DATE between coalesce(:F_DATE_UP, PAY_DATE)
                         and coalesce(:F_DATE_TO + 1, PAY_DATE)
      group by IDEMPL
      into :IDEMPL_LKP_EMPL_F_EMPLNAME, :SUMM
  do
    suspend;
end^
SET TERM ; ^
COMMIT;

;--------------------------- spSalaryMain -----------
SET TERM ^ ;
CREATE OR ALTER PROCEDURE spSalaryMain (
    F_DATE_UP date,
    F_DATE_TO date)
RETURNS (
    ID integer,
    PAY_DATE date,
    IDEMPL_LKP_EMPL_F_EMPLNAME integer,
    SUMM float)
AS
begin
  ID = null;
  PAY_DATE = null;
  for select e.ID, coalesce(d.ACCRUED, 0) - coalesce(p.SUMM, 0)
      from EMPLS e
      left join spSalaryDetail(:F_DATE_UP, :F_DATE_TO) p on p.IDEMPL_LKP_EMPL_F_EMPLNAME = e.ID
      left join (select IDEMPL_LKP_EMPL_F_EMPLNAME as IDEMPL, sum(SUMM) as ACCRUED
                 from spOrdersDetail(:F_DATE_UP, :F_DATE_TO)
                 group by IDEMPL_LKP_EMPL_F_EMPLNAME) d on d.IDEMPL = e.ID
      into :IDEMPL_LKP_EMPL_F_EMPLNAME, :SUMM
  do
    suspend;
end^
SET TERM ; ^
COMMIT;
